#include <iModelStage/interaction/iIAPointBuilder.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/model/iCoordinateSystem.h>
#include <iModelStage/snapping/iBaseSnap.h>
#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerEventHandler.h>

#include <osg/Vec2f>

#include <cmath>
#include <vector>

iIAPointBuilder::iIAPointBuilder(iViewer* viewer, iInteractor* interactor, float x, float y, float nx, float ny)
    : _viewer(viewer), _interactor(interactor), _x(x), _y(y), _nx(nx), _ny(ny)
{
}

bool iIAPointBuilder::intersectIPlane(osg::Vec3f& point) const
{
    iInputPlane* plane = _viewer ? _viewer->getIPlane() : nullptr;
    if (!plane)
        return false;
    return _viewer->computeIPlaneIntersection(plane->getCoordinateSystem(), _x, _y, point);
}

void iIAPointBuilder::constrain(osg::Vec3f& point)
{
    _snap = nullptr;
    _snapAlias.clear();
    _raw = point;
    intersectIPlane(_raw);
    if (!_interactor)
        return;
    if (_interactor->getAcceptSnap()) {
        applySnaps(point);
        applyOrtho(point);
    }
    applyPlaneConstraint(point);
}

void iIAPointBuilder::applySnaps(osg::Vec3f& point)
{
    iGeometricsLayer* layer = _interactor->getGeometricsLayer();
    if (!layer || !_viewer)
        return;
    // A copy: a snap may register classes, which rebuilds the list.
    std::vector<iBaseSnap*> const snaps = iGeometricsLayer::getSnapObjectsList();
    _snap = iBaseSnap::snapMulti(snaps, layer, _viewer, point, osg::Vec2f(_x, _y));
    if (!_snap)
        return;
    _raw = point;
    _snapAlias = _snap->getClassAlias();
}

void iIAPointBuilder::applyOrtho(osg::Vec3f& point)
{
    // Odd steps are the second point of a pair: held to the plane's axes
    // through the first.
    if (!iViewerEventHandler::getOrthoEnabled() || _interactor->getCurrentStep() % 2 != 1)
        return;
    osg::Vec3f local = point * _interactor->getWorldToLocalMatrix();
    osg::Vec3f const& last = _interactor->getLastReleasedPos().getLocalPos();
    osg::Vec3f direction = local - last;
    if (direction.length() > 0.0f)
        direction.normalize();
    if (std::fabs(direction.x()) < std::fabs(direction.y()))
        local.x() = last.x();
    else
        local.y() = last.y();
    point = local * _interactor->getLocalToWorldMatrix();
    _raw = point;
}

void iIAPointBuilder::applyPlaneConstraint(osg::Vec3f& point)
{
    int const step = _interactor->getCurrentStep();
    if (step <= 0)
        return;
    osg::Vec3f const& last = _interactor->getLastReleasedPos().getGlobalPos();
    int const free = _interactor->getIPlaneConstraint(step);
    if (free == 4) {
        alongNormal(last, point);
        return;
    }
    osg::Vec3f const delta = _raw - last;
    point = last + osg::Vec3f((free & 1) ? delta.x() : 0.0f, (free & 2) ? delta.y() : 0.0f,
                              (free & 4) ? delta.z() : 0.0f);
}

void iIAPointBuilder::alongNormal(osg::Vec3f const& last, osg::Vec3f& point)
{
    iInputPlane* plane = _viewer ? _viewer->getIPlane() : nullptr;
    osg::Camera* camera = _viewer ? _viewer->getCamera() : nullptr;
    if (!plane || !camera || !camera->getViewport())
        return;
    iCoordinateSystem const system = plane->getCoordinateSystem();
    osg::Vec3f normal = system.zAxis;
    if (normal.length() > 0.0f)
        normal.normalize();
    bool const onPlane = std::fabs(normal * (_raw - system.origin)) <= 1e-05f;
    osg::Vec3f const origin = onPlane ? last : _raw;

    // A plane through origin that holds the normal and faces the camera
    // as squarely as it can.
    osg::Matrixd const view = camera->getViewMatrix();
    osg::Vec3f const sight = osg::Matrixd::transform3x3(view, osg::Vec3d(0.0, 0.0, -1.0));
    osg::Vec3f facing = sight - normal * (normal * sight);
    if (facing.length() < 1e-6f)
        facing = system.xAxis;
    facing.normalize();
    osg::Vec3f side = facing ^ normal;
    if (side.length() > 0.0f)
        side.normalize();
    iCoordinateSystem const upright(origin, normal, side, facing);

    osg::Vec3f const window =
        _raw * view * camera->getProjectionMatrix() * camera->getViewport()->computeWindowMatrix();
    _viewer->computeIPlaneIntersection(upright, window.x(), window.y(), point);
}

iIAPoint iIAPointBuilder::makePoint(osg::Vec3f const& point) const
{
    osg::Vec3f local = point;
    if (iInputPlane* plane = _viewer ? _viewer->getIPlane() : nullptr)
        local = point * plane->getInverseMatrix();
    return iIAPoint(osg::Vec3f(_nx, _ny, 0.0f), osg::Vec3f(_x, _y, 0.0f), local, point);
}

iIAPoint iIAPointBuilder::compute()
{
    osg::Vec3f point = _interactor ? _interactor->getCurrentPos().getGlobalPos() : osg::Vec3f();
    intersectIPlane(point);
    constrain(point);
    return makePoint(point);
}
