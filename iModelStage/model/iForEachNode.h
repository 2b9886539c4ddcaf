#ifndef IMODELSTAGE_MODEL_IFOREACHNODE_H
#define IMODELSTAGE_MODEL_IFOREACHNODE_H

#include <osg/Group>
#include <osg/Node>

#include <vector>

// What a visitor of iForEachNode asks for after each node.
enum class iVisit { Continue, SkipChildren, Stop };

// Every node from start down, depth first, parents before children, in
// child order; iterative, so that a deep tree cannot exhaust the stack.
// Returns false when the visitor stopped the walk.
template <class Visit>
bool iForEachNode(osg::Node* start, Visit&& visit)
{
    std::vector<osg::Node*> pending;
    if (start)
        pending.push_back(start);
    while (!pending.empty()) {
        osg::Node* node = pending.back();
        pending.pop_back();
        iVisit const next = visit(node);
        if (next == iVisit::Stop)
            return false;
        osg::Group* group = next == iVisit::Continue ? node->asGroup() : nullptr;
        if (!group)
            continue;
        for (unsigned int i = group->getNumChildren(); i > 0; --i)
            if (osg::Node* child = group->getChild(i - 1))
                pending.push_back(child);
    }
    return true;
}

#endif
