#ifndef IMODELSTAGE_GEOMETRY_IMATERIALSLAYER_H
#define IMODELSTAGE_GEOMETRY_IMATERIALSLAYER_H

#include <iModelStage/model/iNodeLayer.h>

// The layer that holds the document's iMaterialGroup objects.
class IMODELSTAGE_EXPORT iMaterialsLayer : public iNodeLayer {
    I_CLASS(iMaterialsLayer, iNodeLayer, 1)
    I_OSG_OBJECT(iMaterialsLayer)
public:
    iMaterialsLayer();
    iMaterialsLayer(iMaterialsLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Nothing of this level is stored.
    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iMaterialsLayer() override;
};

#endif
