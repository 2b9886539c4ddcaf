#ifndef IMODELSTAGE_MODEL_IBASEMODEL_H
#define IMODELSTAGE_MODEL_IBASEMODEL_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/frame/iPointerTable.h>
#include <iModelStage/model/NodeList.h>

#include <QList>

#include <osg/Group>
#include <osg/Object>
#include <osg/observer_ptr>

#include <bitset>
#include <map>
#include <set>
#include <string>
#include <vector>

class iModelSearchOptimizer;
class iNodeGroup;

// A container of scene objects: a root group, a current root under which
// new objects go, the counting and naming of objects, the selection, and
// the signals that every view of the model listens to.
//
// Walks over the model skip geodes and the renderer container of
// geometric objects, whose contents are never model objects.
class IMODELSTAGE_EXPORT iBaseModel : public iRoot, public osg::Object {
    I_CLASS(iBaseModel, iRoot, 1)
    I_OSG_OBJECT(iBaseModel)
public:
    // Selecting `first` selects `second` instead.
    struct iProxySelector {
        osg::observer_ptr<iNodeGroup> first;
        osg::observer_ptr<iNodeGroup> second;
        int firstId = 0;
        int secondId = 0;
    };
    typedef std::map<int, iProxySelector> ProxySelectors;

    // The name of the group that holds a geometric object's drawables.
    static char const* const RendererContainerName;
    static bool isRendererContainer(osg::Node const* node);

    iBaseModel();
    // A fresh model: new signals, a new empty root. Models are not copied
    // with their contents.
    iBaseModel(iBaseModel const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    sigslot::signal1<osg::Node*> sigObjectAdded;
    sigslot::signal1<osg::Node*> sigObjectRemoved;
    sigslot::signal0<> sigBeginRemovingAllObjects;
    sigslot::signal0<> sigAllObjectsRemoved;
    sigslot::signal0<> sigBeginRemovingSelectedObjects;
    sigslot::signal0<> sigSelectedObjectsRemoved;
    sigslot::signal0<> sigModelChanged;
    sigslot::signal3<osg::Node*, osg::Group*, osg::Group*> sigBeginParentChanging;
    sigslot::signal3<osg::Node*, osg::Group*, osg::Group*> sigParentChanged;
    sigslot::signal3<osg::Node*, osg::Group*, osg::Group*> sigEndParentChanging;
    sigslot::signal0<> sigObjectsGroupChanged;
    sigslot::signal2<osg::Group*, osg::Group*> sigCurrentRootObjectChanged;
    sigslot::signal1<osg::Node*> sigObjectSelectionAdded;
    sigslot::signal1<osg::Node*> sigObjectSelectionRemoved;
    sigslot::signal0<> sigObjectsSelectionCleared;
    sigslot::signal0<> sigObjectsSelectionChanged;
    sigslot::signal0<> sigSelectionFilterChanged;
    sigslot::signal3<osg::Node*, unsigned int, bool> sigNodeFlagChanged;
    sigslot::signal3<osg::Node*, std::bitset<32>, std::bitset<32>> sigNodeFlagsChanged;
    sigslot::signal0<> sigNodesFlagsChanged;
    sigslot::signal0<> sigInstantiableClassesChanged;
    sigslot::signal0<> sigBeginLoop;
    sigslot::signal0<> sigEndLoop;

    // Structure.
    virtual void setCurrentRootObject(osg::Group* group);
    virtual void addObject(osg::Node* node, bool recursive);
    // A null parent registers the node where it stands.
    virtual void addChildObject(osg::Group* parent, osg::Node* node, bool recursive);
    virtual bool changeParent(osg::Node* node, osg::Group* oldParent, osg::Group* newParent);
    virtual void removeObject(osg::Node* node, bool recursive);
    virtual void removeSelectedObjects();
    virtual void removeAllObjects();
    virtual bool cloneObjects(NodeList const& list, NodeList& out, bool addToModel, bool newIds);

    // Selection.
    virtual void addObjectSelection(osg::Node* node);
    virtual void removeObjectSelection(osg::Node* node);
    virtual void selectAll();
    virtual void clearObjectSelection();
    virtual void invertObjectSelection();

    // What a viewer attaches to its scene.
    virtual osg::Group* getRoot();
    virtual void slotBeginObjectsPropertyChanged(iProperty* property);
    virtual void slotEndObjectsPropertyChanged(iProperty* property);
    virtual void beginFrame();
    // A new object of a registered instantiable class, named but not added.
    virtual osg::Node* newInstantiableObject(char const* className);
    // The same, added under the root (not the current root).
    virtual osg::Node* addNewInstantiableObject(char const* className);
    virtual void resolveLinks();
    virtual void processPendingCallBacks();
    virtual void loopImplementation();

    void loop() { loopImplementation(); }
    // Batches many changes into one sigObjectsGroupChanged at the next loop.
    void postDeferredUpdate() { _deferredUpdate = true; }
    std::string const& getModelId() const { return _modelId; }
    int getObjectsCount() const { return _objectsCount; }
    osg::Group* getCurrentRootObject() const { return _currentRoot; }
    // The group that holds the model's objects.
    osg::Group* getObjectsRoot() const { return _root.get(); }
    bool getAutoNaming() const { return _autoNaming; }
    // Returns the previous value.
    bool setAutoNaming(bool on);
    bool isLocked() const { return _locked; }

    // False for a class that is not in the class table.
    bool registerInstantiableClass(char const* className);
    std::vector<std::string> const& getInstantiableClasses() const { return _instantiableClasses; }

    iNodeGroup* findObjectByName(std::string const& name);
    iNodeGroup* findObjectByUniqueId(long id);
    // Appends the objects below start, parents before children; with a
    // non-empty class set, only objects of exactly those classes.
    void getObjectsList(osg::Node* start, NodeList& out, std::set<std::string>* classes);
    // The nodes of list whose first parent is not in list.
    void getRoots(NodeList const& list, NodeList& out, std::set<std::string>* classes);
    bool cloneSelectedObjects(NodeList& out, bool addToModel, std::set<std::string>* classes, bool newIds);
    bool containObject(osg::Node* in, osg::Node* what);
    // True when the node hangs below this model's root.
    bool isRelative(osg::Node* node);
    // True when the node's layer id is this model's id.
    bool isOwned(osg::Node* node);
    osg::Group* getFirstNearParent(osg::Node* node);
    void resolveObjectsLinks();

    // Flags through the model: its signals fire only on a real change.
    std::bitset<32> getNodeFlags(osg::Node* node);
    bool isNodeFlagSet(osg::Node* node, unsigned int bit);
    void setNodeFlag(osg::Node* node, unsigned int bit, bool value);
    void setNodeFlags(osg::Node* node, std::bitset<32> flags);
    void setNodeFlagToAllChildren(osg::Node* node, unsigned int bit, bool value);
    void setFlagOnSelected(unsigned int bit, bool value);

    bool isObjectSelected(osg::Node* node) const { return _selectionMap.contains(node); }
    int getSelectionCount() const { return static_cast<int>(_selectionMap.size()); }
    // Appends the selected nodes in order of selection.
    void getSelectionList(NodeList& out, std::set<std::string>* classes);
    // The selected nodes whose first parent is not selected.
    void getSelectionRoots(NodeList& out, std::set<std::string>* classes);
    void selectByName(std::string const& text);
    // Returns the previous value.
    bool lockSelection(bool on);
    bool getSelectionLocked() const { return _selectionLocked; }
    void* getSelectionData(osg::Node* node) const;
    // Returns the previous data; stores nothing for an unselected node.
    void* setSelectionData(osg::Node* node, void* data);
    std::set<std::string> const& getSelectionFilter() const { return _selectionFilter; }
    void setSelectionFilter(std::set<std::string> const& classes);
    bool getSelectionFilterActive() const { return _selectionFilterActive; }
    void setSelectionFilterActive(bool on);

    void addProxySelector(iNodeGroup* object, iNodeGroup* proxy);
    iNodeGroup* getProxySelector(iNodeGroup* object);
    void removeProxySelector(iNodeGroup* object);
    void clearProxySelectors();
    ProxySelectors const& getProxySelectors() const { return _proxySelectors; }

    // The frame's class name of any node: a frame object's own, else OSG's.
    static std::string getNodeClassName(osg::Node const* node);

protected:
    friend class iLayersManager;

    ~iBaseModel() override;

    // An empty id is ignored.
    void setModelId(std::string const& id);
    void beginLock() { _locked = true; }
    void endLock() { _locked = false; }
    // Removal for layers that detach the collected nodes themselves.
    void removeObjectImplementation(osg::Node* node, bool recursive, NodeList& out);
    void slotCallNodeFlagChanged(iNodeGroup* object, unsigned int bit, bool value);
    void slotCallNodeFlagsChanged(iNodeGroup* object, std::bitset<32> oldFlags, std::bitset<32> newFlags);

    ProxySelectors _proxySelectors;

private:
    template <class Visit>
    void walkObjects(osg::Node* start, Visit visit);
    bool canBeRemoved(osg::Node* node);
    void forgetObject(osg::Node* node, bool dropProxy);
    void renameClone(osg::Node* node, bool newIds);
    osg::Node* proxyOf(osg::Node* node);

    bool _locked = false;
    osg::ref_ptr<osg::Group> _root;
    osg::Group* _currentRoot = nullptr;
    // The authority on what is selected, with each node's data. Flat, so
    // that a large selection costs no allocation per node.
    typedef iPointerTable<void*, 0, 4, 20> SelectionMap;
    SelectionMap _selectionMap;
    QList<osg::Node*> _selectionList;
    std::set<std::string> _selectionFilter;
    bool _selectionFilterActive = false;
    bool _deferredUpdate = false;
    std::string _modelId;
    int _objectsCount = 0;
    bool _selectionLocked = false;
    bool _autoNaming = true;
    std::vector<std::string> _instantiableClasses;
    iModelSearchOptimizer* _searchOptimizer = nullptr;
};

#endif
