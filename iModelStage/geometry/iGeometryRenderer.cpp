#include <iModelStage/geometry/iGeometryRenderer.h>

#include <iModelStage/geometry/iGeometricBuilder.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iPolygonEntity.h>
#include <iModelStage/geometry/iQuadEntity.h>
#include <iModelStage/model/iLayersManager.h>

#include <osg/Geode>

I_REGISTER_CLASS(iGeometryRenderer)
I_REGISTER_PROPERTY(iGeometryRenderer, bool, visible, "State")

namespace {

double const kFullTurn = 6.283185307179586;
double const kQuarterTurn = 1.5707963267948966;
int const kCapSegments = 30;

// The layer that holds the geometric objects, when the document has one.
iGeometricsLayer* geometricsLayer()
{
    return dynamic_cast<iGeometricsLayer*>(iLayersManager::getLayer("iGeometricsLayer"));
}

void dirtyBelow(osg::Node* node)
{
    if (osg::Geode* geode = node->asGeode()) {
        for (unsigned int i = 0; i < geode->getNumDrawables(); ++i)
            geode->getDrawable(i)->dirtyDisplayList();
        return;
    }
    if (osg::Group* group = node->asGroup())
        for (unsigned int i = 0; i < group->getNumChildren(); ++i)
            dirtyBelow(group->getChild(i));
}

iGeometricEntity* coloured(iGeometricEntity* entity, osg::Vec4f const& color, osg::Matrixd const& matrix)
{
    entity->setColor(color);
    entity->setMatrix(matrix);
    return entity;
}

} // namespace

iGeometryRenderer::iGeometryRenderer()
{
    _visible = true;
    lockFlags();
    sigvisibleChanged.connect(this, &iGeometryRenderer::slotvisibleChanged);
}

iGeometryRenderer::iGeometryRenderer(iGeometryRenderer const& other, osg::CopyOp const& copyop)
    : iRoot(other), osg::Group(other, copyop), _priority(other._priority), _renderMask(other._renderMask)
{
    _visible = other._visible;
    lockFlags();
    sigvisibleChanged.connect(this, &iGeometryRenderer::slotvisibleChanged);
}

iGeometryRenderer::~iGeometryRenderer() = default;

void iGeometryRenderer::lockFlags()
{
    iNodeGroup::setNodeFlag(this, 5, true);
    iNodeGroup::setNodeFlag(this, 1, false);
    iNodeGroup::setNodeFlag(this, 5, false);
}

std::set<std::string>& iGeometryRenderer::classFilter()
{
    static std::set<std::string> filter;
    return filter;
}

std::set<std::string> const& iGeometryRenderer::getClassFilter()
{
    return classFilter();
}

void iGeometryRenderer::setClassFilter(std::set<std::string> const& filter)
{
    classFilter() = filter;
    forceGeometricLayerUpdate();
}

void iGeometryRenderer::forceGeometricLayerUpdate()
{
    if (iGeometricsLayer* layer = geometricsLayer())
        layer->forceGeometricUpdate();
}

bool iGeometryRenderer::getGeometricEntities(std::vector<iEntityGroup>&)
{
    return false;
}

void iGeometryRenderer::rebuildGeometry(iGeometricGroup*) {}

void iGeometryRenderer::applyRenderMask()
{
    if (!geometricsLayer() || !_geometryGroup)
        return;
    bool const filtered = classFilter().count(_geometryGroup->getClassName()) != 0;
    setNodeMask(filtered ? 0u : static_cast<osg::Node::NodeMask>(_renderMask));
}

void iGeometryRenderer::setRenderMask(int mask)
{
    _renderMask = mask;
    setNodeMask(static_cast<osg::Node::NodeMask>(mask));
}

void iGeometryRenderer::dirtyDisplayList()
{
    dirtyBelow(this);
}

void iGeometryRenderer::slotvisibleChanged(iRoot*, bool value)
{
    iNodeGroup::setNodeFlag(this, 5, true);
    iNodeGroup::setNodeFlag(this, 0, value);
    iNodeGroup::setNodeFlag(this, 5, false);
}

bool iGeometryRenderer::getCylinderEntities(double radius, double length, osg::Vec4f const& color,
                                            std::vector<iGeometricEntity*>& out, osg::Vec3f const& position,
                                            osg::Quat const& rotation)
{
    osg::Matrixd const placement = osg::Matrixd::rotate(rotation) * osg::Matrixd::translate(osg::Vec3d(position));
    double const h = length * 0.5;

    osg::ref_ptr<osg::Vec2Array> arc = new osg::Vec2Array;
    iGeometricBuilder::makeArc(arc.get(), radius, radius, 0.0, kFullTurn, kCapSegments);
    std::vector<osg::Vec3f> outline;
    outline.reserve(arc->size());
    float const r = static_cast<float>(radius);
    for (osg::Vec2f const& p : *arc)
        outline.emplace_back(p.x() - r, p.y() - r, 0.0f);

    osg::Matrixd const capA =
        osg::Matrixd::rotate(kQuarterTurn, osg::Vec3d(0.0, 1.0, 0.0)) * osg::Matrixd::translate(h, 0.0, 0.0) * placement;
    osg::Matrixd const capB = osg::Matrixd::rotate(-kQuarterTurn, osg::Vec3d(0.0, 1.0, 0.0)) *
                              osg::Matrixd::translate(-h, 0.0, 0.0) * placement;
    out.push_back(coloured(new iPolygonEntity(outline), color, capA));
    out.push_back(coloured(new iPolygonEntity(outline), color, capB));

    float const x = static_cast<float>(h);
    std::vector<osg::Vec3f> const strips[4] = {
        {{x, r, 0}, {-x, r, 0}, {-x, -r, 0}, {x, -r, 0}, {x, r, 0}},
        {{x, r, 0}, {x, -r, 0}, {-x, -r, 0}, {-x, r, 0}, {x, r, 0}},
        {{x, 0, r}, {x, 0, -r}, {-x, 0, -r}, {-x, 0, r}, {x, 0, r}},
        {{x, 0, r}, {-x, 0, r}, {-x, 0, -r}, {x, 0, -r}, {x, 0, r}},
    };
    for (std::vector<osg::Vec3f> const& strip : strips)
        out.push_back(coloured(new iQuadEntity(strip), color, placement));
    return true;
}

bool iGeometryRenderer::getExtrudedPolygonEntities(osg::Vec3Array const& vertices, osg::Vec3f const& direction,
                                                   double length, osg::Vec4f const& color, iEntityGroup& out)
{
    std::size_t const n = vertices.size();
    if (n == 0)
        return false;
    osg::Vec3f const offset = direction * static_cast<float>(length);
    std::vector<osg::Vec3f> bottom(vertices.rbegin(), vertices.rend());
    std::vector<osg::Vec3f> top;
    top.reserve(n);
    for (osg::Vec3f const& v : vertices)
        top.push_back(v + offset);

    out.pushEntity(coloured(new iPolygonEntity(bottom), color, osg::Matrixd()));
    out.pushEntity(coloured(new iPolygonEntity(top), color, osg::Matrixd()));
    for (std::size_t i = 0; i + 1 < n; ++i) {
        std::vector<osg::Vec3f> side = {vertices[i], vertices[i + 1], top[i + 1], top[i], vertices[i]};
        out.pushEntity(coloured(new iQuadEntity(side), color, osg::Matrixd()));
    }
    return true;
}
