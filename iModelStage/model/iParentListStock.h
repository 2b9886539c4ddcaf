#ifndef IMODELSTAGE_MODEL_IPARENTLISTSTOCK_H
#define IMODELSTAGE_MODEL_IPARENTLISTSTOCK_H

#include <iModelStage/frame/iExport.h>

#include <osg/Node>

// Parent lists of destroyed document objects, kept for new ones.
//
// Every node's list of parents is a small heap block of the scene
// library's own, which the object pool cannot hold. Emptying a document
// frees one per object, scattered among the host's blocks, and reading the
// next document allocates them all again: the allocator then spends more
// time sorting those small free blocks than the reader spends on its
// objects. Objects give their empty list to the stock when they go and take
// one when they are made. One stock per thread, of bounded size.
class IMODELSTAGE_EXPORT iParentListStock {
public:
    static void give(osg::Node::ParentList& list);
    static void take(osg::Node::ParentList& list);
};

#endif
