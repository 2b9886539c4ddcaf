#ifndef IMODELSTAGE_GEOMETRY_IIMAGESLAYER_H
#define IMODELSTAGE_GEOMETRY_IIMAGESLAYER_H

#include <iModelStage/model/iNodeLayer.h>

// The layer that holds the document's iImageGroup objects.
class IMODELSTAGE_EXPORT iImagesLayer : public iNodeLayer {
    I_CLASS(iImagesLayer, iNodeLayer, 1)
    I_OSG_OBJECT(iImagesLayer)
public:
    iImagesLayer();
    iImagesLayer(iImagesLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Nothing of this level is stored.
    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iImagesLayer() override;
};

#endif
