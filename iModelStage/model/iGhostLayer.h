#ifndef IMODELSTAGE_MODEL_IGHOSTLAYER_H
#define IMODELSTAGE_MODEL_IGHOSTLAYER_H

#include <iModelStage/model/iNodeLayer.h>

// A layer of a name the running program did not register: its model id is
// that name and its single ghost node holds the layer's bytes, written back
// as they came.
class IMODELSTAGE_EXPORT iGhostLayer : public iNodeLayer {
    I_CLASS(iGhostLayer, iNodeLayer, 1)
    I_OSG_OBJECT(iGhostLayer)
public:
    iGhostLayer() = default;
    iGhostLayer(iGhostLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iNodeLayer(other, copyop)
    {
    }

    bool isGhost() const override { return true; }

protected:
    ~iGhostLayer() override = default;
};

#endif
