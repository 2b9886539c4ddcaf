// The selection half of iBaseModel: the selected set and its order, the
// data attached to selected nodes, proxy selectors, the selection filter,
// and flags set through the model.

#include <iModelStage/model/iBaseModel.h>

#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iObjectWalk.h>

#include <QString>

#include <algorithm>

osg::Node* iBaseModel::proxyOf(osg::Node* node)
{
    // Without proxies the node itself is not even read.
    if (_proxySelectors.empty())
        return node;
    if (iNodeGroup* object = dynamic_cast<iNodeGroup*>(node))
        if (iNodeGroup* proxy = getProxySelector(object))
            return proxy;
    return node;
}

void iBaseModel::addObjectSelection(osg::Node* node)
{
    if (_selectionLocked)
        return;
    node = proxyOf(node);
    if (!node || !_selectionMap.insert(node, nullptr).second)
        return;
    _selectionList.append(node);
    sigObjectSelectionAdded(node);
    sigObjectsSelectionChanged();
}

void iBaseModel::removeObjectSelection(osg::Node* node)
{
    if (_selectionLocked)
        return;
    node = proxyOf(node);
    if (!_selectionMap.contains(node))
        return;
    _selectionList.removeOne(node);
    // Listeners still find the node in the map.
    sigObjectSelectionRemoved(node);
    sigObjectsSelectionChanged();
    _selectionMap.erase(node);
}

void iBaseModel::clearObjectSelection()
{
    if (_selectionLocked)
        return;
    // Listeners see an empty list while isObjectSelected still answers for
    // the old selection.
    _selectionList.clear();
    sigObjectsSelectionCleared();
    sigObjectsSelectionChanged();
    _selectionMap.clear();
}

void iBaseModel::selectAll()
{
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    // One table of the final size, rather than a rehash at every doubling.
    if (!_selectionLocked)
        _selectionMap.reserve(_selectionMap.size() + std::size_t(std::max(_objectsCount, 0)));
    for (iObjectWalk walk(_root.get()); osg::Node* node = walk.next();)
        addObjectSelection(node);
    changed.release();
    sigObjectsSelectionChanged();
}

void iBaseModel::invertObjectSelection()
{
    if (_selectionMap.empty() || _root->getNumChildren() == 0)
        return;
    SelectionMap const previous = _selectionMap;
    clearObjectSelection();
    sigslot::signal_blocker changed(sigObjectsSelectionChanged);
    for (iObjectWalk walk(_root.get()); osg::Node* node = walk.next();)
        if (!previous.contains(node) && node != _currentRoot)
            addObjectSelection(node);
    changed.release();
    sigObjectsSelectionChanged();
}

void iBaseModel::selectByName(std::string const& text)
{
    if (text.empty())
        return;
    QString const wanted = QString::fromStdString(text);
    bool first = true;
    for (iObjectWalk walk(_root.get()); osg::Node* node = walk.next();) {
        std::string const& name = node->getName();
        if (name.empty() || !QString::fromStdString(name).contains(wanted, Qt::CaseSensitive))
            continue;
        if (first)
            clearObjectSelection();
        first = false;
        addObjectSelection(node);
    }
}

void iBaseModel::getSelectionList(NodeList& out, std::set<std::string>* classes)
{
    if (_selectionList.isEmpty())
        return;
    QList<osg::Node*> const selected = _selectionList;
    bool const filtered = classes && !classes->empty();
    for (osg::Node* node : selected)
        if (!filtered || classes->count(getNodeClassName(node)) > 0)
            out.push_back(node);
}

void iBaseModel::getSelectionRoots(NodeList& out, std::set<std::string>* classes)
{
    NodeList selected;
    getSelectionList(selected, classes);
    getRoots(selected, out, nullptr);
}

bool iBaseModel::lockSelection(bool on)
{
    bool previous = _selectionLocked;
    _selectionLocked = on;
    return previous;
}

void* iBaseModel::getSelectionData(osg::Node* node) const
{
    void* const* data = _selectionMap.find(node);
    return data ? *data : nullptr;
}

void* iBaseModel::setSelectionData(osg::Node* node, void* data)
{
    void** stored = _selectionMap.find(node);
    if (!stored)
        return nullptr;
    void* previous = *stored;
    *stored = data;
    return previous;
}

void iBaseModel::setSelectionFilter(std::set<std::string> const& classes)
{
    _selectionFilter = classes;
    sigSelectionFilterChanged();
}

void iBaseModel::setSelectionFilterActive(bool on)
{
    _selectionFilterActive = on;
    sigSelectionFilterChanged();
}

void iBaseModel::addProxySelector(iNodeGroup* object, iNodeGroup* proxy)
{
    if (!object)
        return;
    int const key = static_cast<int>(object->getUniqueId());
    auto it = _proxySelectors.find(key);
    if (it != _proxySelectors.end() && it->second.second.valid() && it->second.second.get() == proxy)
        return;
    iNodeGroup::setNodeFlag(object, 8, true);
    iProxySelector entry;
    entry.first = object;
    entry.second = proxy;
    entry.firstId = key;
    entry.secondId = proxy ? static_cast<int>(proxy->getUniqueId()) : 0;
    _proxySelectors[key] = entry;
}

iNodeGroup* iBaseModel::getProxySelector(iNodeGroup* object)
{
    if (!object || _proxySelectors.empty())
        return nullptr;
    auto it = _proxySelectors.find(static_cast<int>(object->getUniqueId()));
    return it == _proxySelectors.end() ? nullptr : it->second.second.get();
}

void iBaseModel::removeProxySelector(iNodeGroup* object)
{
    if (!object)
        return;
    auto it = _proxySelectors.find(static_cast<int>(object->getUniqueId()));
    if (it == _proxySelectors.end())
        return;
    if (iNodeGroup* proxied = it->second.first.get())
        iNodeGroup::setNodeFlag(proxied, 8, false);
    _proxySelectors.erase(it);
}

void iBaseModel::clearProxySelectors()
{
    for (auto& entry : _proxySelectors)
        if (iNodeGroup* proxied = entry.second.first.get())
            iNodeGroup::setNodeFlag(proxied, 8, false);
    _proxySelectors.clear();
}

std::bitset<32> iBaseModel::getNodeFlags(osg::Node* node)
{
    return iNodeGroup::getNodeFlags(node);
}

bool iBaseModel::isNodeFlagSet(osg::Node* node, unsigned int bit)
{
    return iNodeGroup::isNodeFlagSet(node, bit);
}

void iBaseModel::setNodeFlag(osg::Node* node, unsigned int bit, bool value)
{
    bool const old = iNodeGroup::isNodeFlagSet(node, bit);
    iNodeGroup::setNodeFlag(node, bit, value);
    if (iNodeGroup::isNodeFlagSet(node, bit) == old)
        return;
    sigNodeFlagChanged(node, bit, value);
    sigNodesFlagsChanged();
}

void iBaseModel::setNodeFlags(osg::Node* node, std::bitset<32> flags)
{
    std::bitset<32> const old = iNodeGroup::getNodeFlags(node);
    iNodeGroup::setNodeFlags(node, flags);
    std::bitset<32> const now = iNodeGroup::getNodeFlags(node);
    if (now == old)
        return;
    sigNodeFlagsChanged(node, old, now);
    sigNodesFlagsChanged();
}

void iBaseModel::setNodeFlagToAllChildren(osg::Node* node, unsigned int bit, bool value)
{
    iNodeGroup::setNodeFlagToAllChildren(node, bit, value);
}

void iBaseModel::setFlagOnSelected(unsigned int bit, bool value)
{
    // A copy: listeners may change the selection meanwhile.
    std::vector<osg::Node*> selected;
    selected.reserve(_selectionMap.size());
    _selectionMap.forEach([&selected](void const* node, void*) {
        selected.push_back(static_cast<osg::Node*>(const_cast<void*>(node)));
    });
    for (osg::Node* node : selected)
        if (iNodeGroup::isNodeFlagSet(node, bit) != value)
            setNodeFlag(node, bit, value);
}

void iBaseModel::slotCallNodeFlagChanged(iNodeGroup* object, unsigned int bit, bool value)
{
    sigNodeFlagChanged(object, bit, value);
}

void iBaseModel::slotCallNodeFlagsChanged(iNodeGroup* object, std::bitset<32> oldFlags, std::bitset<32> newFlags)
{
    sigNodeFlagsChanged(object, oldFlags, newFlags);
}
