#ifndef IMODELSTAGE_FRAME_MEMBERBASE_H
#define IMODELSTAGE_FRAME_MEMBERBASE_H

#include <iModelStage/frame/iExport.h>

class iClass;

// A named member of a class record.
class IMODELSTAGE_EXPORT MemberBase {
public:
    MemberBase(iClass const* owner, char const* name) : m_class(owner), m_name(name) {}
    virtual ~MemberBase() = default;

    char const* getName() const { return m_name; }
    iClass const& getClass() const { return *m_class; }

private:
    iClass const* m_class;
    char const* m_name;
};

#endif
