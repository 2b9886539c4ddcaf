#ifndef IMODELSTAGE_VIEWING_IBASEVIEW_H
#define IMODELSTAGE_VIEWING_IBASEVIEW_H

#include <iModelStage/frame/iObjectMacros.h>

#include <QPixmap>

#include <bitset>
#include <set>
#include <string>

class iBaseModel;

namespace osg {
class Group;
class Node;
} // namespace osg

// Base of everything that shows a model: it holds one model, hears every
// change of it through one virtual slot per signal, and keeps the view's
// filters. It draws nothing; viewers and the host's tree and list panels
// derive from it and override the slots they need.
//
// The model is not owned: a view lets go of a model that is destroyed.
class IMODELSTAGE_EXPORT iBaseView : public iRoot {
    I_CLASS(iBaseView, iRoot, 1)
public:
    iBaseView();
    ~iBaseView() override;

    iBaseModel* getViewModel() const { return m_model; }
    // False for null; with a model filter, only models of its classes.
    bool canSetModel(iBaseModel* model);
    // Refused models, null among them, leave the present one in place.
    virtual void setViewModel(iBaseModel* model);
    void setModelFilter(std::set<std::string> const& classes) { m_modelFilter = classes; }
    std::set<std::string> const& getModelFilter() const { return m_modelFilter; }

    std::set<std::string> const& getClassFilter() const { return m_classFilter; }
    void setFilterByClasses(std::set<std::string> const& classes);
    std::set<std::string> const& getPropertyFilter() const { return m_propertyFilter; }
    void setFilterByProperties(std::set<std::string> const& properties);
    std::string const& getNameFilter() const { return m_nameFilter; }
    virtual void setFilterByName(std::string const& name);
    bool getSelectObjectsWhenFiltering() const { return m_selectWhenFiltering; }
    void setSelectObjectsWhenFiltering(bool on) { m_selectWhenFiltering = on; }

    virtual QPixmap getObjectPixmap(osg::Node* node);
    // Applies the filters; a view that filters overrides it.
    virtual void processFilters(bool selectObjects);

    virtual void slotObjectAdded(osg::Node*) { }
    virtual void slotObjectRemoved(osg::Node*) { }
    virtual void slotAllObjectsRemoved() { }
    virtual void slotBeginRemovingSelectedObjects() { }
    virtual void slotSelectedObjectsRemoved() { }
    virtual void slotModelChanged() { }
    virtual void slotObjectsGroupChanged() { }
    virtual void slotCurrentRootObjectChanged(osg::Group*, osg::Group*) { }
    virtual void slotObjectSelectionAdded(osg::Node*) { }
    virtual void slotObjectSelectionRemoved(osg::Node*) { }
    virtual void slotObjectsSelectionCleared() { }
    virtual void slotObjectsSelectionChanged() { }
    virtual void slotSelectionFilterChanged() { }
    virtual void slotNodeFlagChanged(osg::Node*, unsigned int, bool) { }
    virtual void slotNodeFlagsChanged(osg::Node*, std::bitset<32>, std::bitset<32>) { }
    virtual void slotNodesFlagsChanged() { }
    virtual void slotBeginParentChanging(osg::Node*, osg::Group*, osg::Group*) { }
    virtual void slotParentChanged(osg::Node*, osg::Group*, osg::Group*) { }
    virtual void slotEndParentChanging(osg::Node*, osg::Group*, osg::Group*) { }

    void read(iInStream&, int) { }
    void write(iOutStream&) { }

private:
    template <class Visit> void forEachModelSignal(iBaseModel* model, Visit visit);
    void slotModelDestroyed(iRoot* model);

    iBaseModel* m_model = nullptr;
    std::set<std::string> m_modelFilter;
    std::set<std::string> m_classFilter;
    std::set<std::string> m_propertyFilter;
    std::string m_nameFilter;
    bool m_selectWhenFiltering = false;
};

#endif
