#include "shapes/wbPointQuoteRenderer.h"

#include "shapes/wbRenderSupport.h"

#include <iModelStage/dimensioning/iPointQuote.h>

#include <osg/Point>

I_REGISTER_CLASS(wbPointQuoteRenderer)

void wbPointQuoteRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* quote = dynamic_cast<iPointQuote*>(group);
    if (!quote)
        return;
    osg::ref_ptr<osg::Vec3Array> point = new osg::Vec3Array(1);
    osg::ref_ptr<osg::Geometry> dot = new osg::Geometry;
    dot->setVertexArray(point.get());
    // The quote's own colour is transparent by default: the dot is black.
    osg::ref_ptr<osg::Vec4Array> black = new osg::Vec4Array;
    black->push_back(osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f));
    dot->setColorArray(black.get(), osg::Array::BIND_OVERALL);
    dot->addPrimitiveSet(new osg::DrawElementsUInt(GL_POINTS, 1));
    osg::Geode* geode = wbRender::addDrawable(this, dot.get(), false);
    geode->getOrCreateStateSet()->setAttributeAndModes(new osg::Point(6.0f));
}
