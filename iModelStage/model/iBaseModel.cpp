#include <iModelStage/model/iBaseModel.h>

#include <iModelStage/model/iForEachNode.h>
#include <iModelStage/model/iModelSearchOptimizer.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iObjectWalk.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/Geode>

#include <algorithm>
#include <cstring>
#include <unordered_set>

I_REGISTER_CLASS(iBaseModel)

char const* const iBaseModel::RendererContainerName = "__#iGeometricRendererNodes#__";

namespace {

// Bounds walks up the parent chain, should a host have built a cycle.
constexpr int kMaxAncestors = 1 << 16;

// Names given by addChildObject and by newInstantiableObject: two counters
// shared by every model of the process, which only grow.
int nextChildName()
{
    static int counter = 0;
    return counter++;
}

int nextInstanceName()
{
    static int counter = 0;
    return counter++;
}

bool classAccepted(std::set<std::string> const* classes, osg::Node* node)
{
    return !classes || classes->empty() || classes->count(iBaseModel::getNodeClassName(node)) > 0;
}

} // namespace

bool iBaseModel::isRendererContainer(osg::Node const* node)
{
    // Every walk asks this of every node: the length decides most cases.
    static std::string const name = RendererContainerName;
    return node && node->getName() == name;
}

std::string iBaseModel::getNodeClassName(osg::Node const* node)
{
    if (!node)
        return std::string();
    if (iRoot const* object = dynamic_cast<iRoot const*>(node))
        return object->getClassName();
    return node->className();
}

iBaseModel::iBaseModel() : _root(new osg::Group)
{
    _currentRoot = _root.get();
    _searchOptimizer = new iModelSearchOptimizer(this);
    setCurrentRootObject(_root.get());
}

iBaseModel::iBaseModel(iBaseModel const& other, osg::CopyOp const& copyop)
    : iRoot(other), osg::Object(other, copyop), _root(new osg::Group)
{
    _currentRoot = _root.get();
    _searchOptimizer = new iModelSearchOptimizer(this);
    setCurrentRootObject(_root.get());
}

iBaseModel::~iBaseModel()
{
    delete _searchOptimizer;
}

void iBaseModel::setModelId(std::string const& id)
{
    if (!id.empty())
        _modelId = id;
}

bool iBaseModel::setAutoNaming(bool on)
{
    bool previous = _autoNaming;
    _autoNaming = on;
    return previous;
}

void iBaseModel::setCurrentRootObject(osg::Group* group)
{
    osg::Group* old = _currentRoot;
    _currentRoot = group;
    sigCurrentRootObjectChanged(old, group);
}

void iBaseModel::addObject(osg::Node* node, bool recursive)
{
    addChildObject(_currentRoot, node, recursive);
}

void iBaseModel::addChildObject(osg::Group* parent, osg::Node* node, bool recursive)
{
    if (!node)
        return;
    osg::ref_ptr<osg::Node> hold(node);
    if (parent)
        parent->addChild(node);
    if (iNodeGroup* object = iNodeGroup::fromNode(node)) {
        if (_autoNaming && object->get_name().empty()) {
            std::string alias;
            iRoot::getClassAlias(object->getClassName(), alias);
            object->set_name(alias + "_" + std::to_string(nextChildName()));
        }
        object->sigFlagChanged.connect(this, &iBaseModel::slotCallNodeFlagChanged);
        object->sigFlagsChanged.connect(this, &iBaseModel::slotCallNodeFlagsChanged);
    }
    if (iNodeGroup::getNodeLayerId(node).empty())
        iNodeGroup::setNodeLayerId(node, _modelId);
    ++_objectsCount;
    sigObjectAdded(node);
    sigModelChanged();
    if (!recursive)
        return;
    osg::Group* group = node->asGroup();
    if (!group)
        return;
    // A copy of the child list: listeners may change the tree meanwhile.
    NodeList children(group->getNumChildren());
    for (unsigned int i = 0; i < group->getNumChildren(); ++i)
        children[i] = group->getChild(i);
    for (osg::ref_ptr<osg::Node> const& child : children)
        if (child && !child->asGeode() && !isRendererContainer(child.get()))
            addChildObject(nullptr, child.get(), true);
}

bool iBaseModel::changeParent(osg::Node* node, osg::Group* oldParent, osg::Group* newParent)
{
    if (!node || !oldParent || !newParent || oldParent == newParent || isRendererContainer(node))
        return false;
    if (!isRelative(oldParent) || !isRelative(newParent))
        return false;
    osg::ref_ptr<osg::Node> hold(node);
    iTransformGroup* transform = dynamic_cast<iTransformGroup*>(node);
    osg::Matrixd matrix;
    if (transform)
        matrix = transform->getMatrix();
    sigBeginParentChanging(node, oldParent, newParent);
    oldParent->removeChild(node);
    newParent->addChild(node);
    if (transform)
        transform->setMatrix(matrix);
    sigParentChanged(node, oldParent, newParent);
    sigEndParentChanging(node, oldParent, newParent);
    sigModelChanged();
    return true;
}

bool iBaseModel::canBeRemoved(osg::Node* node)
{
    return node && node->getNumParents() > 0 && isRelative(node) && iNodeGroup::isNodeFlagSet(node, 2);
}

// The steps that both forms of removal share, from leaving the selection to
// announcing the removal.
void iBaseModel::forgetObject(osg::Node* node, bool dropProxy)
{
    iNodeGroup* object = iNodeGroup::fromNode(node);
    if (dropProxy)
        removeProxySelector(object);
    removeObjectSelection(node);
    if (iNodeGroup::getNodeLayerId(node) == _modelId)
        iNodeGroup::setNodeLayerId(node, std::string());
    if (object) {
        object->sigFlagChanged.disconnect(this);
        object->sigFlagsChanged.disconnect(this);
    }
    --_objectsCount;
    sigObjectRemoved(node);
    if (object)
        object->sigRemoved(object);
    if (node == _currentRoot && _currentRoot != _root.get())
        setCurrentRootObject(_root.get());
}

void iBaseModel::removeObject(osg::Node* node, bool recursive)
{
    if (!canBeRemoved(node))
        return;
    osg::ref_ptr<osg::Node> hold(node);
    osg::Group* group = node->asGroup();
    if (recursive && group) {
        // The index rises while the list shrinks: of four removable
        // children the order of removal is first, third, fourth, second.
        unsigned int const count = group->getNumChildren();
        for (unsigned int i = 0; i < count; ++i) {
            if (group->getNumChildren() == 0)
                break;
            osg::Node* child = group->getChild(std::min(i, group->getNumChildren() - 1));
            if (!child->asGeode() && !isRendererContainer(child))
                removeObject(child, true);
        }
    }
    sigslot::signal_blocker removed(sigObjectSelectionRemoved);
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    forgetObject(node, true);
    // Because i rises while the parents shrink, a node with two parents in
    // this model loses only the first.
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
        osg::Group* parent = node->getParent(i);
        if (isRelative(parent))
            parent->removeChild(node);
    }
    sigModelChanged();
    hold = nullptr;
    changed.release();
    removed.release();
}

void iBaseModel::removeObjectImplementation(osg::Node* node, bool recursive, NodeList& out)
{
    if (!canBeRemoved(node))
        return;
    osg::ref_ptr<osg::Node> hold(node);
    osg::Group* group = node->asGroup();
    if (recursive && group) {
        for (unsigned int i = 0; i < group->getNumChildren(); ++i) {
            osg::Node* child = group->getChild(i);
            if (!child->asGeode() && !isRendererContainer(child))
                removeObjectImplementation(child, true, out);
        }
    }
    sigslot::signal_blocker removed(sigObjectSelectionRemoved);
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    // The caller detaches what is collected here, and drops proxies then.
    forgetObject(node, false);
    out.push_back(node);
}

void iBaseModel::removeAllObjects()
{
    sigBeginRemovingAllObjects();
    setCurrentRootObject(_root.get());
    _root->removeChildren(0, _root->getNumChildren());
    sigslot::signal_blocker cleared(sigObjectsSelectionCleared);
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    clearProxySelectors();
    clearObjectSelection();
    _objectsCount = 0;
    sigAllObjectsRemoved();
    sigModelChanged();
    changed.release();
    cleared.release();
}

void iBaseModel::removeSelectedObjects()
{
    NodeList selected;
    getSelectionList(selected, nullptr);
    if (selected.empty())
        return;
    sigslot::signal_blocker modelChanged(sigModelChanged);
    sigBeginRemovingSelectedObjects();
    sigslot::signal_blocker cleared(sigObjectsSelectionCleared);
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    clearObjectSelection();
    for (osg::ref_ptr<osg::Node> const& node : selected)
        if (node->getNumParents() > 0)
            removeObject(node.get(), true);
    modelChanged.release();
    sigSelectedObjectsRemoved();
    sigModelChanged();
    changed.release();
    cleared.release();
}

bool iBaseModel::cloneObjects(NodeList const& list, NodeList& out, bool addToModel, bool newIds)
{
    NodeList roots;
    getRoots(list, roots, nullptr);
    if (addToModel)
        clearObjectSelection();
    for (osg::ref_ptr<osg::Node> const& root : roots) {
        if (!iNodeGroup::isNodeFlagSet(root.get(), 9))
            continue;
        osg::ref_ptr<osg::Node> clone = static_cast<osg::Node*>(root->clone(osg::CopyOp(0x7fffffff)));
        if (!dynamic_cast<iNodeGroup*>(clone.get()))
            continue;
        renameClone(clone.get(), newIds);
        if (addToModel) {
            addObject(clone.get(), true);
            addObjectSelection(clone.get());
        }
        out.push_back(clone);
    }
    return !out.empty();
}

void iBaseModel::renameClone(osg::Node* node, bool newIds)
{
    iForEachNode(node, [newIds](osg::Node* current) {
        osg::Group* group = current->asGroup();
        if (!group || isRendererContainer(group))
            return iVisit::SkipChildren;
        if (iNodeGroup* object = dynamic_cast<iNodeGroup*>(group)) {
            if (newIds)
                object->setUniqueId(iRoot::generateUniqueId(0));
            object->set_name("Copia di " + object->get_name());
        }
        return iVisit::Continue;
    });
}

bool iBaseModel::cloneSelectedObjects(NodeList& out, bool addToModel, std::set<std::string>* classes, bool newIds)
{
    out.clear();
    NodeList selected;
    getSelectionList(selected, classes);
    return cloneObjects(selected, out, addToModel, newIds);
}

void iBaseModel::getObjectsList(osg::Node* start, NodeList& out, std::set<std::string>* classes)
{
    for (iObjectWalk walk(start); osg::Node* node = walk.next();)
        if (classAccepted(classes, node))
            out.push_back(node);
}

void iBaseModel::getRoots(NodeList const& list, NodeList& out, std::set<std::string>* classes)
{
    std::unordered_set<osg::Node*> listed;
    for (osg::ref_ptr<osg::Node> const& node : list)
        if (node && classAccepted(classes, node.get()))
            listed.insert(node.get());
    for (osg::ref_ptr<osg::Node> const& node : list) {
        osg::Node* parent = node && node->getNumParents() > 0 ? node->getParent(0) : nullptr;
        if (parent && listed.find(parent) == listed.end())
            out.push_back(node);
    }
}

bool iBaseModel::containObject(osg::Node* in, osg::Node* what)
{
    return !iForEachNode(in, [what](osg::Node* node) { return node == what ? iVisit::Stop : iVisit::Continue; });
}

bool iBaseModel::isRelative(osg::Node* node)
{
    // Only the last parent's answer counts unless some parent is the root,
    // so one chain up by last parents decides.
    for (int depth = 0; node && depth < kMaxAncestors; ++depth) {
        if (node == _root.get())
            return true;
        unsigned int const parents = node->getNumParents();
        if (parents == 0)
            return false;
        for (unsigned int i = 0; i < parents; ++i)
            if (node->getParent(i) == _root.get())
                return true;
        node = node->getParent(parents - 1);
    }
    return false;
}

bool iBaseModel::isOwned(osg::Node* node)
{
    if (node == _root.get())
        return true;
    if (!node || node->getNumParents() == 0)
        return false;
    return iNodeGroup::getNodeLayerId(node) == _modelId;
}

osg::Group* iBaseModel::getFirstNearParent(osg::Node* node)
{
    if (!node || !isRelative(node) || node->getNumParents() == 0)
        return nullptr;
    for (unsigned int i = 0; i < node->getNumParents(); ++i) {
        osg::Group* parent = node->getParent(i);
        if (parent == _root.get())
            return parent;
        unsigned int const grandParents = parent->getNumParents();
        for (unsigned int j = 0; j < grandParents; ++j)
            if (parent->getParent(j) == _root.get())
                return parent;
        if (grandParents > 0 && isRelative(parent->getParent(grandParents - 1)))
            return parent;
    }
    return nullptr;
}

iNodeGroup* iBaseModel::findObjectByName(std::string const& name)
{
    for (iObjectWalk walk(_root.get()); osg::Node* node = walk.next();) {
        iNodeGroup* object = dynamic_cast<iNodeGroup*>(node);
        if (object && object->get_name() == name)
            return object;
    }
    return nullptr;
}

iNodeGroup* iBaseModel::findObjectByUniqueId(long id)
{
    return _searchOptimizer->findObjectByUniqueId(id);
}

void iBaseModel::resolveObjectsLinks()
{
    for (iObjectWalk walk(_root.get()); osg::Node* node = walk.next();)
        if (iNodeGroup* object = iNodeGroup::fromNode(node))
            object->resolveLinks();
}

bool iBaseModel::registerInstantiableClass(char const* className)
{
    if (!iRoot::findClass(className))
        return false;
    if (std::find(_instantiableClasses.begin(), _instantiableClasses.end(), className) != _instantiableClasses.end())
        return true;
    _instantiableClasses.push_back(className);
    sigInstantiableClassesChanged();
    return true;
}

osg::Node* iBaseModel::newInstantiableObject(char const* className)
{
    if (!className ||
        std::find(_instantiableClasses.begin(), _instantiableClasses.end(), className) == _instantiableClasses.end())
        return nullptr;
    iRoot* created = iRoot::newClass(className);
    osg::Node* node = dynamic_cast<osg::Node*>(created);
    if (!node) {
        delete created;
        return nullptr;
    }
    std::string alias;
    iRoot::getClassAlias(className, alias);
    created->set_name(alias + " " + std::to_string(nextInstanceName()));
    return node;
}

osg::Node* iBaseModel::addNewInstantiableObject(char const* className)
{
    osg::Node* node = newInstantiableObject(className);
    if (node)
        addChildObject(_root.get(), node, true);
    return node;
}

osg::Group* iBaseModel::getRoot()
{
    return _root.get();
}

void iBaseModel::slotBeginObjectsPropertyChanged(iProperty*) {}

void iBaseModel::slotEndObjectsPropertyChanged(iProperty*) {}

void iBaseModel::beginFrame() {}

void iBaseModel::resolveLinks() {}

void iBaseModel::processPendingCallBacks() {}

void iBaseModel::loopImplementation()
{
    sigBeginLoop();
    if (_deferredUpdate) {
        _deferredUpdate = false;
        sigObjectsGroupChanged();
    }
    beginLock();
    processPendingCallBacks();
    endLock();
    beginFrame();
    sigEndLoop();
}
