#ifndef IMODELSTAGE_GEOMETRY_IINPUTPLANESLAYER_H
#define IMODELSTAGE_GEOMETRY_IINPUTPLANESLAYER_H

#include <iModelStage/model/iNodeLayer.h>

// The layer that holds the document's iInputPlane objects.
class IMODELSTAGE_EXPORT iInputPlanesLayer : public iNodeLayer {
    I_CLASS(iInputPlanesLayer, iNodeLayer, 1)
    I_OSG_OBJECT(iInputPlanesLayer)
public:
    iInputPlanesLayer();
    iInputPlanesLayer(iInputPlanesLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Nothing of this level is stored.
    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iInputPlanesLayer() override;
};

#endif
