#ifndef IMODELSTAGE_EDITING_IPOINTHANDLE_H
#define IMODELSTAGE_EDITING_IPOINTHANDLE_H

#include <iModelStage/editing/iBaseHandle.h>

// The usual handle: a small square drawn at a fixed size on screen by
// iPointHandleRenderer.
class IMODELSTAGE_EXPORT iPointHandle : public iBaseHandle {
    I_CLASS(iPointHandle, iBaseHandle, 1)
    I_OSG_NODE(iPointHandle)
public:
    iPointHandle();
    iPointHandle(iPointHandle const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iPointHandle() override;
};

#endif
