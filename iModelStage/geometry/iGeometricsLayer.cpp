#include <iModelStage/geometry/iGeometricsLayer.h>

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricGroupCallback.h>
#include <iModelStage/geometry/iGeometricsLayerUpdateCallback.h>
#include <iModelStage/geometry/iMaterialGroup.h>
#include <iModelStage/geometry/iSnapHelper.h>
#include <iModelStage/model/iForEachNode.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/LightModel>
#include <osg/StateSet>

#include <cstring>
#include <unordered_set>

I_REGISTER_CLASS(iGeometricsLayer)

sigslot::signal0<> iGeometricsLayer::sigSnapFilterChanged;

namespace {

// Bounds walks up the parent chain, should a host have built a cycle.
constexpr int kMaxAncestors = 1 << 16;

void setTransparentLook(osg::StateSet* state, osg::StateAttribute::GLModeValue blend, osg::LightModel* lightModel)
{
    state->setMode(GL_BLEND, osg::StateAttribute::ON | blend);
    state->setAttributeAndModes(lightModel, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setRenderingHint(osg::StateSet::TRANSPARENT_BIN);
}

// The parts of a "class::id" entry, empty parts kept.
std::vector<std::string> splitEntry(std::string const& value)
{
    std::vector<std::string> parts;
    std::string::size_type start = 0;
    for (;;) {
        std::string::size_type const at = value.find("::", start);
        if (at == std::string::npos) {
            parts.push_back(value.substr(start));
            return parts;
        }
        parts.push_back(value.substr(start, at - start));
        start = at + 2;
    }
}

iGeometricGroup* asGeometricGroup(iRoot* source)
{
    return dynamic_cast<iGeometricGroup*>(source);
}

} // namespace

iGeometricsLayer::iGeometricsLayer()
{
    buildSubtree();
}

iGeometricsLayer::iGeometricsLayer(iGeometricsLayer const& other, osg::CopyOp const& copyop)
    : iNodeLayer(other, copyop)
{
    buildSubtree();
}

iGeometricsLayer::~iGeometricsLayer()
{
    _geometricUpdateCache.clear();
    _pendingCallbacks.clear();
}

void iGeometricsLayer::buildSubtree()
{
    _layerRoot = new osg::MatrixTransform;
    _layerRoot->setDataVariance(osg::Object::DYNAMIC);
    _iPlanes = new osg::Group;
    _interactiveLayer = new osg::Group;

    osg::ref_ptr<osg::LightModel> lightModel = new osg::LightModel;
    lightModel->setTwoSided(true);
    setTransparentLook(getObjectsRoot()->getOrCreateStateSet(), osg::StateAttribute::OVERRIDE, lightModel.get());
    setTransparentLook(_interactiveLayer->getOrCreateStateSet(), osg::StateAttribute::PROTECTED, lightModel.get());

    _layerRoot->addChild(_iPlanes.get());
    _layerRoot->addChild(getObjectsRoot());
    _layerRoot->addChild(_interactiveLayer.get());

    sigObjectSelectionAdded.connect(this, &iGeometricsLayer::slotObjectSelectionAdded);
    sigObjectSelectionRemoved.connect(this, &iGeometricsLayer::slotObjectSelectionRemoved);
    sigObjectsSelectionCleared.connect(this, &iGeometricsLayer::slotObjectSelectionCleared);
    sigNodeFlagChanged.connect(this, &iGeometricsLayer::slotNodeFlagChanged);
    sigNodeFlagsChanged.connect(this, &iGeometricsLayer::slotNodeFlagsChanged);
    sigSelectionFilterChanged.connect(this, &iGeometricsLayer::slotSelectionFilterChanged);
}

osg::Group* iGeometricsLayer::getRoot()
{
    return _layerRoot.get();
}

void iGeometricsLayer::addChildObject(osg::Group* parent, osg::Node* node, bool recursive)
{
    if (node && !node->getUpdateCallback())
        node->setUpdateCallback(new iGeometricsLayerUpdateCallback(this));
    if (iGeometricGroup* group = dynamic_cast<iGeometricGroup*>(node)) {
        group->sigGeometryGroupChanged.connect(this, &iGeometricsLayer::slotGeometryGroupChanged);
        group->sigGeometryGroupFinalized.connect(this, &iGeometricsLayer::slotGeometryGroupFinalized);
        group->sigmaterialChanged.connect(this, &iGeometricsLayer::slotGeometryMaterialChanged);
        group->sigusecolorChanged.connect(this, &iGeometricsLayer::slotGeometryUseColorChanged);
        group->sigusematerialChanged.connect(this, &iGeometricsLayer::slotGeometryUseMaterialChanged);
        addToGeometricCacheUpdate(group);
    }
    iNodeLayer::addChildObject(parent, node, recursive);
}

void iGeometricsLayer::removeObject(osg::Node* node, bool recursive)
{
    iGeometricGroup* group = dynamic_cast<iGeometricGroup*>(node);
    if (group && group->getNumParents() > 0 && isRelative(group) && iNodeGroup::isNodeFlagSet(group, 2)) {
        removeFromGeometricCacheUpdate(group);
        // The material connections stay: they only swap state sets.
        group->sigGeometryGroupChanged.disconnect(this);
        group->sigGeometryGroupFinalized.disconnect(this);
    }
    iNodeLayer::removeObject(node, recursive);
}

void iGeometricsLayer::removeAllObjects()
{
    clearGeometricUpdateCache();
    iNodeLayer::removeAllObjects();
}

void iGeometricsLayer::beginFrame()
{
    processPendingGeometricUpdates();
}

bool iGeometricsLayer::lockUnLockGeometricUpdate(bool lock)
{
    bool const previous = _geometricUpdateLocked;
    _geometricUpdateLocked = lock;
    return previous;
}

void iGeometricsLayer::addToGeometricCacheUpdate(iGeometricGroup* group)
{
    if (!group)
        return;
    auto const queued = _geometricUpdateCache.find(group);
    if (queued != _geometricUpdateCache.end()) {
        // An entry of a group that died unannounced must not stand in for
        // a new group at the same address.
        osg::ref_ptr<iGeometricGroup> alive;
        if (queued->second.group.lock(alive))
            return;
        _geometricUpdateCache.erase(queued);
    }
    if (_geometricUpdateLocked)
        return;
    // From now on updateGeometry(false) waits for the frame.
    group->setAsyncUpdate(false);
    _geometricUpdateCache.emplace(group, cachedGroup{group->getUniqueId(), group});
}

void iGeometricsLayer::removeFromGeometricCacheUpdate(iGeometricGroup* group)
{
    auto it = _geometricUpdateCache.find(group);
    if (it == _geometricUpdateCache.end())
        return;
    group->setAsyncUpdate(true);
    _geometricUpdateCache.erase(it);
}

void iGeometricsLayer::clearGeometricUpdateCache()
{
    std::map<iGeometricGroup*, cachedGroup>().swap(_geometricUpdateCache);
}

void iGeometricsLayer::processPendingGeometricUpdates()
{
    if (_geometricUpdateCache.empty())
        return;
    // A copy, so that rebuilds may queue and unqueue groups meanwhile; the
    // references keep alive a group that a rebuild removes.
    std::vector<osg::ref_ptr<iGeometricGroup>> groups;
    groups.reserve(_geometricUpdateCache.size());
    for (auto const& entry : _geometricUpdateCache) {
        osg::ref_ptr<iGeometricGroup> group;
        if (entry.second.group.lock(group))
            groups.push_back(group);
    }
    for (osg::ref_ptr<iGeometricGroup> const& group : groups)
        group->forceGeometryUpdate();
    // What was queued during the rebuilds goes too: a group that queues
    // itself from its own rebuild is not rebuilt again.
    clearGeometricUpdateCache();
}

void iGeometricsLayer::forceGeometricUpdate()
{
    osg::Node* root = getObjectsRoot();
    iForEachNode(root, [this, root](osg::Node* node) {
        if (node->asGeode() || isRendererContainer(node))
            return iVisit::SkipChildren;
        if (node != root && iRoot::isClassOf(node->className(), "iGeometricGroup"))
            addToGeometricCacheUpdate(dynamic_cast<iGeometricGroup*>(node));
        return iVisit::Continue;
    });
}

void iGeometricsLayer::slotGeometryGroupChanged(iGeometricGroup* group)
{
    addToGeometricCacheUpdate(group);
}

bool iGeometricsLayer::isInObjectRoot(osg::Node* node)
{
    // Upward from the node, so that the cost is the depth and not the size
    // of the document.
    osg::Node* root = getObjectsRoot();
    std::vector<osg::Node*> pending;
    std::unordered_set<osg::Node*> seen;
    if (node)
        pending.push_back(node);
    while (!pending.empty() && seen.size() < static_cast<std::size_t>(kMaxAncestors)) {
        osg::Node* current = pending.back();
        pending.pop_back();
        if (current == root)
            return true;
        if (!seen.insert(current).second)
            continue;
        for (unsigned int i = 0; i < current->getNumParents(); ++i)
            pending.push_back(current->getParent(i));
    }
    return false;
}

bool iGeometricsLayer::isQueued(iGeometricGroup* group, std::string const& callbackClass, std::string const& id) const
{
    for (pendingCallback const& record : _pendingCallbacks)
        if (record.group == group && record.id == id && record.callback->getClassName() == callbackClass)
            return true;
    return false;
}

void iGeometricsLayer::slotGeometryGroupFinalized(iGeometricGroup* group, std::string const& id)
{
    if (!group || !isInObjectRoot(group))
        return;
    auto const range = gcallbackmap().equal_range(group->getClassName());
    for (auto it = range.first; it != range.second; ++it) {
        std::vector<std::string> const parts = splitEntry(it->second);
        if (parts.size() < 2)
            return;
        std::string const& callbackClass = parts[0];
        std::string const& callbackId = parts[1];
        if (isQueued(group, callbackClass, id))
            return;
        if (callbackId != id)
            continue;
        iRoot* made = iRoot::newClass(callbackClass.c_str());
        iGeometricGroupCallback* callback = dynamic_cast<iGeometricGroupCallback*>(made);
        if (!callback) {
            // Not a callback class: nothing to run.
            delete made;
            continue;
        }
        _pendingCallbacks.push_back(pendingCallback{std::unique_ptr<iGeometricGroupCallback>(callback), group, id});
    }
}

void iGeometricsLayer::forEachFinalizing(void (*work)(iGeometricsLayer*, iGeometricGroupCallback*, iGeometricGroup*))
{
    // By index over the live queue, so that records appended by the work
    // take part in the rest of the pass.
    for (std::size_t i = 0; i < _pendingCallbacks.size(); ++i) {
        osg::ref_ptr<iGeometricGroup> group;
        if (!_pendingCallbacks[i].group.lock(group) || !isInObjectRoot(group.get()))
            continue;
        work(this, _pendingCallbacks[i].callback.get(), group.get());
    }
}

void iGeometricsLayer::processPendingCallBacks()
{
    // A callback that asks for the queue to run from within a run is
    // answered by the run under way.
    if (_processingCallbacks)
        return;
    struct Running {
        bool& flag;
        explicit Running(bool& f) : flag(f) { flag = true; }
        ~Running() { flag = false; }
    } running(_processingCallbacks);

    sigFinalizeBegin();
    forEachFinalizing([](iGeometricsLayer* layer, iGeometricGroupCallback* callback, iGeometricGroup* group) {
        callback->beginFinalizeImplementation(layer, group);
        layer->sigGroupFinalizeBegin(group);
    });
    forEachFinalizing([](iGeometricsLayer* layer, iGeometricGroupCallback* callback, iGeometricGroup* group) {
        callback->finalize(layer, group, false);
    });
    forEachFinalizing([](iGeometricsLayer* layer, iGeometricGroupCallback* callback, iGeometricGroup* group) {
        callback->endFinalizeImplementation(layer, group);
        layer->sigGroupFinalizeEnd(group);
    });
    // Every callback goes, also those whose group left the layer.
    std::vector<pendingCallback> done;
    done.swap(_pendingCallbacks);
    done.clear();
    sigFinalizeEnd();
}

iGeometricsLayer* iGeometricsLayer::getEditingLayer()
{
    if (_editingLayer)
        return _editingLayer.get();
    _editingLayer = new iGeometricsLayer;
    _layerRoot->addChild(_editingLayer->getObjectsRoot());
    _interactiveLayer->addChild(_editingLayer->getInteractiveLayer());
    _editingLayer->getObjectsRoot()->getOrCreateStateSet()->setMode(
        GL_BLEND, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    sigEndLoop.connect(static_cast<iBaseModel*>(_editingLayer.get()), &iBaseModel::loop);
    return _editingLayer.get();
}

void iGeometricsLayer::showAll()
{
    setNodeFlagToAllChildren(getObjectsRoot(), 0, true);
}

void iGeometricsLayer::hideAll()
{
    setNodeFlagToAllChildren(getObjectsRoot(), 0, false);
}

void iGeometricsLayer::showSelected()
{
    setFlagOnSelected(0, true);
}

void iGeometricsLayer::hideSelected()
{
    setFlagOnSelected(0, false);
}

void iGeometricsLayer::hideUnSelected(osg::Node* except)
{
    NodeList objects;
    getObjectsList(getObjectsRoot(), objects, nullptr);
    NodeList selected;
    for (osg::ref_ptr<osg::Node> const& object : objects) {
        if (!object || !object->asGroup() || object.get() == except)
            continue;
        if (isObjectSelected(object.get()))
            selected.push_back(object);
        else
            setNodeFlag(object.get(), 0, false);
    }
    for (osg::ref_ptr<osg::Node> const& object : selected)
        showAncestors(object.get(), 0);
}

// Shows the parents of node that belong to this model, the topmost first.
void iGeometricsLayer::showAncestors(osg::Node* node, int depth)
{
    if (depth >= kMaxAncestors)
        return;
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
        osg::Group* parent = node->getParent(i);
        if (!isRelative(parent))
            continue;
        showAncestors(parent, depth + 1);
        iNodeGroup::setNodeFlag(parent, 0, true);
    }
}

bool iGeometricsLayer::isObjectFiltered(osg::Node* node)
{
    if (!node)
        return false;
    char const* const className = node->className();
    // This application class is never filtered out.
    if (std::strcmp(className, "iObStrutturaGroup") == 0)
        return true;
    if (!getSelectionFilterActive() || getSelectionFilter().empty())
        return true;
    return getSelectionFilter().count(className) > 0;
}

void iGeometricsLayer::slotGeometryMaterialChanged(iRoot* source, iMaterialGroupObserver material)
{
    iGeometricGroup* group = asGeometricGroup(source);
    if (!group)
        return;
    osg::ref_ptr<iMaterialGroup> alive;
    if (material.lock(alive) && alive)
        group->setStateSet(alive->getOrCreateStateSet());
    else
        group->setStateSet(new osg::StateSet);
}

void iGeometricsLayer::slotGeometryUseColorChanged(iRoot* source, iBoolSwitch on)
{
    iGeometricGroup* group = asGeometricGroup(source);
    if (group && on)
        group->setStateSet(new osg::StateSet);
}

void iGeometricsLayer::slotGeometryUseMaterialChanged(iRoot* source, iBoolSwitch on)
{
    iGeometricGroup* group = asGeometricGroup(source);
    if (group && on)
        slotGeometryMaterialChanged(source, group->get_material());
}

std::multimap<std::string, std::string>& iGeometricsLayer::gcallbackmap()
{
    static std::multimap<std::string, std::string> map;
    return map;
}

void iGeometricsLayer::registerGeometryCallback(char const* className, char const* callbackClass, char const* id)
{
    if (!className || !callbackClass || !id)
        return;
    gcallbackmap().emplace(className, std::string(callbackClass) + "::" + id);
}

iGeometricsLayer::iSnapHelper& iGeometricsLayer::snapHelper()
{
    static iSnapHelper helper;
    return helper;
}

bool iGeometricsLayer::registerSnapClass(char const* className)
{
    return className && snapHelper().registerClass(className);
}

void iGeometricsLayer::freeSnapObjects()
{
    snapHelper().freeObjects();
}

void iGeometricsLayer::rebuildSnapObjects()
{
    snapHelper().rebuildObjects();
}

iBaseSnap* iGeometricsLayer::getSnapObject(char const* className)
{
    return snapHelper().find(className);
}

std::vector<iBaseSnap*> const& iGeometricsLayer::getSnapObjectsList()
{
    return snapHelper().objects();
}

std::set<std::string> const& iGeometricsLayer::getSnapFilter()
{
    return snapHelper().filter;
}

void iGeometricsLayer::setSnapFilter(std::set<std::string> const& classes)
{
    snapHelper().filter = classes;
    sigSnapFilterChanged();
}

bool iGeometricsLayer::getSnapFilterActive()
{
    return snapHelper().filterActive;
}

void iGeometricsLayer::setSnapFilterActive(bool on)
{
    snapHelper().filterActive = on;
}
