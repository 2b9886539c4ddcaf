#ifndef IMODELSTAGE_GEOMETRY_IGRIDSLAYER_H
#define IMODELSTAGE_GEOMETRY_IGRIDSLAYER_H

#include <iModelStage/geometry/iGeometricsLayer.h>

// The layer that holds the document's iGridGroup objects. It rebuilds
// them as any geometrics layer does: once per frame.
class IMODELSTAGE_EXPORT iGridsLayer : public iGeometricsLayer {
    I_CLASS(iGridsLayer, iGeometricsLayer, 1)
    I_OSG_OBJECT(iGridsLayer)
public:
    iGridsLayer();
    iGridsLayer(iGridsLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Nothing of this level is stored.
    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iGridsLayer() override;
};

#endif
