#ifndef IMODELSTAGE_GEOMETRY_IFILEREFERENCEGROUPRENDERER_H
#define IMODELSTAGE_GEOMETRY_IFILEREFERENCEGROUPRENDERER_H

#include <iModelStage/geometry/iGeometryRenderer.h>

// Draws the content of a file reference that is not itself a geometric
// group, by holding its wrapper as a child. A geometric import is shown by
// the object tree instead, so never both.
class IMODELSTAGE_EXPORT iFileReferenceGroupRenderer : public iGeometryRenderer {
    I_CLASS(iFileReferenceGroupRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iFileReferenceGroupRenderer)
public:
    iFileReferenceGroupRenderer();
    iFileReferenceGroupRenderer(iFileReferenceGroupRenderer const& other,
                                osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void rebuildGeometry(iGeometricGroup* group) override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iFileReferenceGroupRenderer() override;
};

#endif
