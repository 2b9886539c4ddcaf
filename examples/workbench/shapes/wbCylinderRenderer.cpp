#include "shapes/wbCylinderRenderer.h"

#include "shapes/wbCylinder.h"
#include "shapes/wbRenderSupport.h"
#include "shapes/wbShapeValues.h"

#include <cmath>

I_REGISTER_CLASS(wbCylinderRenderer)

namespace {

// Four rings of n points: the mantle's bottom and top, with normals out
// of the axis, then the bottom and top caps with normals along it.
void addRings(osg::Vec3Array* vertices, osg::Vec3Array* normals, int n, float radius, float height)
{
    for (int ring = 0; ring < 4; ++ring) {
        float const z = (ring % 2) ? height : 0.0f;
        for (int i = 0; i < n; ++i) {
            double const angle = 2.0 * osg::PI * i / n;
            osg::Vec3f const out(float(std::cos(angle)), float(std::sin(angle)), 0.0f);
            vertices->push_back(out * radius + osg::Vec3f(0.0f, 0.0f, z));
            normals->push_back(ring < 2 ? out : osg::Vec3f(0.0f, 0.0f, ring == 3 ? 1.0f : -1.0f));
        }
    }
}

osg::DrawElementsUInt* mantle(unsigned int n)
{
    auto* quads = new osg::DrawElementsUInt(GL_QUADS);
    for (unsigned int i = 0; i < n; ++i) {
        unsigned int const next = (i + 1) % n;
        for (unsigned int index : {i, next, n + next, n + i})
            quads->push_back(index);
    }
    return quads;
}

osg::DrawElementsUInt* cap(unsigned int first, unsigned int n)
{
    auto* polygon = new osg::DrawElementsUInt(GL_POLYGON);
    for (unsigned int i = 0; i < n; ++i)
        polygon->push_back(first + i);
    return polygon;
}

} // namespace

void wbCylinderRenderer::rebuildGeometry(iGeometricGroup* group)
{
    auto* cylinder = dynamic_cast<wbCylinder*>(group);
    if (!cylinder)
        return;
    int const n = wbShapeValues::segments(cylinder->get_segments());
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array;
    addRings(vertices.get(), normals.get(), n, float(cylinder->get_radius()), float(cylinder->get_height()));

    osg::Geometry* solid = wbRender::coloredGeometry(cylinder, vertices.get());
    solid->setNormalArray(normals.get(), osg::Array::BIND_PER_VERTEX);
    solid->addPrimitiveSet(mantle(n));
    solid->addPrimitiveSet(cap(2 * n, n));
    solid->addPrimitiveSet(cap(3 * n, n));
    wbRender::addDrawable(this, solid, true);
}
