#ifndef IMODELSTAGE_MODEL_IOBJECTWALK_H
#define IMODELSTAGE_MODEL_IOBJECTWALK_H

#include <iModelStage/frame/iExport.h>

#include <osg/Node>
#include <osg/ref_ptr>

#include <typeinfo>
#include <unordered_map>
#include <vector>

// The model's object walk, one object at a time: depth first, parents
// before children, in child order. Geodes and the renderer container of
// geometric objects end a branch; the start itself is never returned. An
// object is a node whose frame class descends from iNodeGroup.
//
//     for (iObjectWalk walk(root); osg::Node* node = walk.next();)
//         ...
//
// The walk holds a reference on each group it is inside and on the node it
// returned, and reads child lists as they stand when it gets to them, so the
// caller may change the tree as it goes, as with a recursive walk over child
// indices. Nodes ahead of the walk are prefetched: on large documents
// waiting for memory is most of the cost of a walk.
class IMODELSTAGE_EXPORT iObjectWalk {
public:
    explicit iObjectWalk(osg::Node* start);
    iObjectWalk(iObjectWalk const&) = delete;
    iObjectWalk& operator=(iObjectWalk const&) = delete;

    // The next object, or null when the walk is over.
    osg::Node* next();

    // Whether a node is a model object, by its frame class.
    bool isObject(osg::Node* node);

private:
    struct Frame {
        osg::ref_ptr<osg::Group> group;
        unsigned int next;
    };

    void enter(osg::Node* node);

    struct Recent {
        std::type_info const* type = nullptr;
        bool object = false;
    };
    static constexpr int kRecent = 4;

    osg::Node* m_start;
    std::vector<Frame> m_frames;
    osg::ref_ptr<osg::Node> m_current;
    std::unordered_map<std::type_info const*, bool> m_objectTypes;
    Recent m_recent[kRecent];
    int m_nextRecent = 0;
};

#endif
