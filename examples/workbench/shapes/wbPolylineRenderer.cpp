#include "shapes/wbPolylineRenderer.h"

#include "shapes/wbPolyline.h"
#include "shapes/wbRenderSupport.h"

I_REGISTER_CLASS(wbPolylineRenderer)

void wbPolylineRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* polyline = dynamic_cast<wbPolyline*>(group);
    if (!polyline || polyline->getNumVertices() < 2)
        return;
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array(*polyline->getVertices());
    osg::Geometry* segments = wbRender::coloredGeometry(polyline, vertices.get());
    segments->addPrimitiveSet(wbRender::chainSegments(vertices->size(), polyline->get_closed()));
    wbRender::addDrawable(this, segments, false);
}
