#include <iModelStage/model/iObjectWalk.h>

#include <iModelStage/frame/iRoot.h>
#include <iModelStage/model/iBaseModel.h>

#include <osg/Group>

namespace {

// How many siblings ahead the walk asks for memory.
constexpr unsigned int kPrefetchDistance = 4;

// What the walk reads of a node: its first line (type, reference count,
// name) and the child list right behind the osg::Node part.
void prefetchNode(osg::Node const* node)
{
    __builtin_prefetch(node, 1);
    __builtin_prefetch(reinterpret_cast<char const*>(node) + sizeof(osg::Node));
}

} // namespace

iObjectWalk::iObjectWalk(osg::Node* start) : m_start(start)
{
    if (start && !start->asGeode())
        enter(start);
}

bool iObjectWalk::isObject(osg::Node* node)
{
    // The answer depends on the class only; the type comes from the node's
    // own vtable, so no further part of the node is read. A tree holds few
    // types, met again and again: the last ones are checked first.
    std::type_info const* type = &typeid(*node);
    for (Recent const& recent : m_recent)
        if (recent.type == type)
            return recent.object;
    auto it = m_objectTypes.find(type);
    if (it == m_objectTypes.end()) {
        iRoot* object = dynamic_cast<iRoot*>(node);
        bool const result = object && iRoot::isClassOf(object->getClassName(), "iNodeGroup");
        it = m_objectTypes.emplace(type, result).first;
    }
    m_recent[m_nextRecent] = Recent{type, it->second};
    m_nextRecent = (m_nextRecent + 1) % kRecent;
    return it->second;
}

void iObjectWalk::enter(osg::Node* node)
{
    osg::Group* group = node->asGroup();
    if (!group || iBaseModel::isRendererContainer(node))
        return;
    for (unsigned int i = 0; i < kPrefetchDistance && i < group->getNumChildren(); ++i)
        prefetchNode(group->getChild(i));
    m_frames.push_back(Frame{group, 0});
}

osg::Node* iObjectWalk::next()
{
    if (m_current) {
        enter(m_current.get());
        m_current = nullptr;
    }
    while (!m_frames.empty()) {
        Frame& frame = m_frames.back();
        osg::Group* group = frame.group.get();
        if (frame.next >= group->getNumChildren()) {
            m_frames.pop_back();
            continue;
        }
        osg::Node* node = group->getChild(frame.next++);
        unsigned int const ahead = frame.next + kPrefetchDistance - 1;
        if (ahead < group->getNumChildren())
            prefetchNode(group->getChild(ahead));
        if (!node || node->asGeode())
            continue;
        if (node == m_start || iBaseModel::isRendererContainer(node) || !isObject(node)) {
            enter(node);
            continue;
        }
        m_current = node;
        return node;
    }
    return nullptr;
}
