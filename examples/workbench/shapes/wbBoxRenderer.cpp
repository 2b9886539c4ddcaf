#include "shapes/wbBoxRenderer.h"

#include "shapes/wbBox.h"

#include <iModelStage/geometry/iGeometricBuilder.h>

I_REGISTER_CLASS(wbBoxRenderer)

void wbBoxRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* box = dynamic_cast<wbBox*>(group);
    if (!box)
        return;
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    iGeometricBuilder::buildBox(geode.get(), box->get_sizex(), box->get_sizey(), box->get_sizez());
    for (unsigned int i = 0; i < geode->getNumDrawables(); ++i)
        if (osg::Geometry* faces = geode->getDrawable(i)->asGeometry())
            faces->setColorArray(box->getSharedColorArray(), osg::Array::BIND_OVERALL);
    addChild(geode.get());
}
