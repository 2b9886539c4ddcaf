#ifndef IMODELSTAGE_MODEL_ILAYERMANAGERHISTORY_H
#define IMODELSTAGE_MODEL_ILAYERMANAGERHISTORY_H

#include <iModelStage/frame/iObjectMacros.h>

#include <list>
#include <string>
#include <vector>

class iBaseModel;
class iLayersManager;

// A back-and-forward list of the layers that were current, at most 16.
// Moving through the list does not add to it.
class IMODELSTAGE_EXPORT iLayerManagerHistory : public iRoot {
    I_CLASS(iLayerManagerHistory, iRoot, 1)
public:
    static constexpr int maxSize = 16;

    explicit iLayerManagerHistory(iLayersManager* manager = nullptr);

    sigslot::signal0<> sigHistoryChanged;

    bool canGoNext() const;
    bool canGoPrev() const;
    bool goNext();
    bool goPrev();
    bool goTo(int index);
    void clear();
    int getHistorySize() const { return static_cast<int>(_names.size()); }
    int getIndex() const { return _index; }
    std::vector<std::string> const& getNames() const { return _names; }
    // The layer names before and after the current position.
    std::list<std::string> getPrevClasses() const;
    std::list<std::string> getNextClasses() const;

protected:
    void slotCurrentLayerChanged(iBaseModel* layer);

private:
    bool moveTo(int index);

    iLayersManager* _manager;
    std::vector<std::string> _names;
    int _index = -1;
};

#endif
