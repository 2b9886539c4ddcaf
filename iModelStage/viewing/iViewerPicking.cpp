// What the viewer offers to find things under the pointer, to cut the
// model with a clip box and to switch classes of rendered objects.
#include <iModelStage/viewing/iViewer.h>

#include <iModelStage/model/iCoordinateSystem.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/BlendFunc>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LineStipple>
#include <osgUtil/IntersectionVisitor>

#include <cmath>

namespace {

// Viewport pixel of a position normalised to -1..1.
bool windowPosition(osg::Camera const* camera, osg::Vec2f const& p, double& wx, double& wy)
{
    osg::Viewport const* viewport = camera ? camera->getViewport() : nullptr;
    if (!viewport)
        return false;
    wx = std::trunc((p.x() * 0.5 + 0.5) * viewport->width()) + viewport->x();
    wy = std::trunc((p.y() * 0.5 + 0.5) * viewport->height()) + viewport->y();
    return true;
}

template <class Intersector>
bool intersect(osg::Camera* camera, Intersector* intersector, typename Intersector::Intersections& out)
{
    osg::ref_ptr<Intersector> hold(intersector);
    osgUtil::IntersectionVisitor visitor(intersector);
    camera->accept(visitor);
    if (!intersector->containsIntersections())
        return false;
    out = intersector->getIntersections();
    return true;
}

} // namespace

bool iViewer::computeCameraLineIntersector(float x, float y, osg::Vec3f& start, osg::Vec3f& end)
{
    osg::Camera const* camera = getCamera();
    if (!camera)
        return false;
    // The scene library reads the position as pixels of this window only
    // once its event state belongs to the window; before that it rescales
    // it as if it were normalised, and the main camera with the position as
    // given is the right answer.
    float localX = x, localY = y;
    osgGA::GUIEventAdapter const* state = getEventQueue()->getCurrentEventState();
    if (state && state->getGraphicsContext() == getGraphicsWindow()) {
        if (osg::Camera const* found = getCameraContainingPosition(x, y, localX, localY))
            camera = found;
        else {
            localX = x;
            localY = y;
        }
    }
    osg::Matrixd m = camera->getViewMatrix() * camera->getProjectionMatrix();
    if (camera->getViewport())
        m.postMult(camera->getViewport()->computeWindowMatrix());
    osg::Matrixd const inverse = osg::Matrixd::inverse(m);
    double const nearZ = camera->getViewport() ? 0.0 : -1.0;
    start = osg::Vec3f(osg::Vec3d(localX, localY, nearZ) * inverse);
    end = osg::Vec3f(osg::Vec3d(localX, localY, 1.0) * inverse);
    return true;
}

bool iViewer::computeIPlaneIntersection(iCoordinateSystem const& cs, float x, float y, osg::Vec3f& point)
{
    osg::Vec3f start, end;
    if (!computeCameraLineIntersector(x, y, start, end))
        return false;
    osg::Vec3f d = end - start;
    if (d.length() > 0.0f)
        d.normalize();
    osg::Vec3f const& n = cs.zAxis;
    double const denominator = n * d;
    if (std::fabs(denominator) < 1e-06)
        return false;
    double const t = static_cast<double>(n * (cs.origin - start)) / denominator;
    if (t < 0.0)
        return false;
    point = start + d * static_cast<float>(t);
    point = point - n * (n * (point - cs.origin));
    return true;
}

bool iViewer::getLineSegmentIntersections(osg::Vec2f const& p, osgUtil::LineSegmentIntersector::Intersections& out)
{
    double wx = 0.0, wy = 0.0;
    if (!windowPosition(getCamera(), p, wx, wy))
        return false;
    return intersect(getCamera(), new osgUtil::LineSegmentIntersector(osgUtil::Intersector::WINDOW, wx, wy), out);
}

bool iViewer::getPolytotypeIntersections(osg::Vec2f const& p, double w, double h,
                                         osgUtil::PolytopeIntersector::Intersections& out)
{
    double wx = 0.0, wy = 0.0;
    if (!windowPosition(getCamera(), p, wx, wy))
        return false;
    return intersect(getCamera(),
                     new osgUtil::PolytopeIntersector(osgUtil::Intersector::WINDOW, wx - w, wy - h, wx + w, wy + h),
                     out);
}

osg::Node* iViewer::processClipBox(osg::Node* node)
{
    if (!m_clipBoxEnabled)
        return node;
    osg::Group* group = new osg::Group;
    auto* place = new osg::MatrixTransform(m_clipMatrix);
    if (!m_clipNode.valid())
        m_clipNode = new osg::ClipNode;
    if (!m_clipBox.valid()) {
        osg::BoundingSphere const& sphere = node->getBound();
        osg::Vec3f const r(sphere.radius(), sphere.radius(), sphere.radius());
        m_clipBox = sphere.radius() < 0.0f ? osg::BoundingBox()
                                           : osg::BoundingBox(sphere.center() - r, sphere.center() + r);
    }
    m_clipNode->createClipBox(m_clipBox, 0);
    m_clipNode->setCullingActive(false);
    place->addChild(m_clipNode.get());
    group->addChild(place);
    auto* clipped = new osg::Group;
    clipped->setStateSet(m_clipNode->getOrCreateStateSet());
    clipped->addChild(node);
    group->addChild(clipped);
    return group;
}

void iViewer::reapplySceneData()
{
    setSceneData(m_sceneData.get());
}

bool iViewer::isPointClipped(osg::Vec3f const& point)
{
    if (!m_clipBoxEnabled || !m_clipNode.valid())
        return false;
    osg::Vec3d const q = osg::Vec3d(point) * osg::Matrixd::inverse(m_clipMatrix);
    for (osg::ref_ptr<osg::ClipPlane> const& plane : m_clipNode->getClipPlaneList())
        if (plane.valid() && plane->getClipPlane() * osg::Vec4d(q, 1.0) < 0.0)
            return true;
    return false;
}

void iViewer::setClipBoxData(osg::BoundingBox const& box, osg::Matrixd const& matrix)
{
    m_clipBox = box;
    m_clipMatrix = matrix;
    if (m_clipBoxEnabled)
        reapplySceneData();
    sigClipBoxChanged();
}

void iViewer::setClipBoxEnabled(bool on)
{
    m_clipBoxEnabled = on;
    reapplySceneData();
    sigClipBoxChanged();
}

void iViewer::rebuildClipBoxGeometry()
{
    if (!m_clipGeometry.valid())
        return;
    m_clipGeometry->removeChildren(0, m_clipGeometry->getNumChildren());
    iNodeGroup::setNodeFlag(m_clipGeometry.get(), 0, m_clipBoxEnabled);
    if (!m_clipBoxEnabled)
        return;
    m_clipGeometry->setMatrix(m_clipMatrix);
    float const overhang = 3000.0f;
    auto* vertices = new osg::Vec3Array;
    // Corners differ by bit 0 in x, bit 1 in y, bit 2 in z; an edge joins
    // two corners that differ in one bit.
    for (unsigned int axis = 0; axis < 3; ++axis) {
        unsigned int const bit = 1u << axis;
        osg::Vec3f direction;
        direction[axis] = 1.0f;
        for (unsigned int corner = 0; corner < 8; ++corner) {
            if (corner & bit)
                continue;
            vertices->push_back(m_clipBox.corner(corner) - direction * overhang);
            vertices->push_back(m_clipBox.corner(corner | bit) + direction * overhang);
        }
    }
    auto* geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    auto* color = new osg::Vec4Array;
    color->push_back(osg::Vec4(0.1f, 0.2f, 0.1f, 0.95f));
    geometry->setColorArray(color, osg::Array::BIND_OVERALL);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, static_cast<GLsizei>(vertices->size())));
    osg::StateSet* state = geometry->getOrCreateStateSet();
    state->setMode(GL_BLEND, 3);
    state->setMode(GL_LIGHTING, 2);
    state->setAttributeAndModes(new osg::LineStipple(1, 255));
    auto* geode = new osg::Geode;
    geode->addDrawable(geometry);
    m_clipGeometry->addChild(geode);
}

bool iViewer::addRendererMask(unsigned int mask, QString const& label, char const* optClass)
{
    iRenderererMaskItem const row(mask, label, optClass ? optClass : "", true);
    int const found = isValidRendererMask(mask);
    if (found >= 0)
        m_rendererMasks[static_cast<std::size_t>(found)] = row;
    else
        m_rendererMasks.push_back(row);
    buildAndSetRendererMask();
    return true;
}

bool iViewer::setRendererMaskEnabled(unsigned int mask, bool on)
{
    int const found = isValidRendererMask(mask);
    if (found < 0)
        return false;
    m_rendererMasks[static_cast<std::size_t>(found)].setEnabled(on);
    buildAndSetRendererMask();
    sigRendererMaskChanged();
    return true;
}

bool iViewer::isRendererMaskEnabled(unsigned int mask)
{
    for (iRenderererMaskItem const& row : m_rendererMasks)
        if (row.getEnabled() && row.sharesBits(mask))
            return true;
    return false;
}

bool iViewer::isRendererMaskNodeEnabled(osg::Node* node)
{
    return node && isRendererMaskEnabled(node->getNodeMask());
}

int iViewer::isValidRendererMask(unsigned int mask)
{
    for (std::size_t i = 0; i < m_rendererMasks.size(); ++i)
        if (m_rendererMasks[i].sharesBits(mask))
            return static_cast<int>(i);
    return -1;
}

bool iViewer::isValidRendererMaskNode(osg::Node* node)
{
    return node && isValidRendererMask(node->getNodeMask()) != -1;
}

void iViewer::buildAndSetRendererMask()
{
    m_cullMask = 0;
    for (iRenderererMaskItem const& row : m_rendererMasks)
        if (row.getEnabled())
            m_cullMask |= row.getMask();
    getCamera()->setCullMask(m_cullMask);
}
