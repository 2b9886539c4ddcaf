#include "shapes/wbLabelRenderer.h"

#include "shapes/wbLabel.h"
#include "shapes/wbRenderSupport.h"

I_REGISTER_CLASS(wbLabelRenderer)

void wbLabelRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* label = dynamic_cast<wbLabel*>(group);
    if (!label)
        return;
    osg::ref_ptr<osgText::Text> text = new osgText::Text;
    wbRender::layText(text.get(), label->get_text(), osg::Vec3f(), label->get_height(), osgText::Text::LEFT_BASE_LINE,
                      label->getColor());
    wbRender::addDrawable(this, text.get(), false);

    osg::ref_ptr<osg::Vec3Array> anchor = new osg::Vec3Array(1);
    osg::Geometry* point = wbRender::coloredGeometry(label, anchor.get());
    point->addPrimitiveSet(new osg::DrawElementsUInt(GL_POINTS, 1));
    wbRender::addDrawable(this, point, false);
}
