#ifndef IMODELSTAGE_REPORTING_IEXCEPTIONITEM_H
#define IMODELSTAGE_REPORTING_IEXCEPTIONITEM_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/model/iNodeFinder.h>

#include <string>

class iExceptionBlock;
class iNodeGroup;

// One finding of a document check: its level, an id, texts, and a weak
// link to the object concerned, which may be gone by the time a user reads
// it.
class IMODELSTAGE_EXPORT iExceptionItem {
public:
    // Other values are kept but not counted.
    enum ItemType : int { Information = 0, Warning = 1, Error = 2 };

    iExceptionItem(std::string const& id, ItemType type, iNodeGroup* object, std::string const& message,
                   std::string const& description, char const* iaClass);

    std::string const& getId() const { return m_id; }
    ItemType getType() const { return m_type; }
    std::string const& getMessage() const { return m_message; }
    std::string const& getDescription() const { return m_description; }
    // A tool that can deal with the finding; may be empty.
    std::string const& getIAClass() const { return m_iaClass; }
    iExceptionBlock* getParentBlock() const { return m_parentBlock; }
    // Null when none was given or it is gone.
    iNodeGroup* getObject() const { return m_object.get(); }
    void setObject(iNodeGroup* object) { m_object = iNodeFinder(object); }
    // The message, and the object's name while the object lives.
    std::string getFormattedMessage() const;

private:
    friend class iExceptionBlock;

    iNodeFinder m_object;
    ItemType m_type;
    std::string m_id;
    std::string m_message;
    std::string m_description;
    std::string m_iaClass;
    iExceptionBlock* m_parentBlock = nullptr;
};

#endif
