#include <iModelStage/interaction/iRotateViewIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/viewing/iViewer.h>

#include <cmath>

I_REGISTER_CLASS(iRotateViewIA)

iRotateViewIA::iRotateViewIA()
{
    setNumSteps(1);
    setAcceptSnap(false);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate("Cliccare col pulsante sinistro del mouse e trascinare per ruotare la vista")),
            iIATypeVec3, osg::Vec3f());
}

iRotateViewIA::~iRotateViewIA() = default;

bool iRotateViewIA::click(iIAPoint const& p)
{
    iStackedInteractor::click(p);
    iViewer* viewer = getViewer();
    if (!viewer)
        return true;
    osg::Matrixd const inverse = viewer->getCamera()->getInverseViewMatrix();
    osg::Vec3d eye;
    osg::Quat rotation;
    osg::Vec3d scale;
    osg::Quat scaleOrientation;
    inverse.decompose(eye, rotation, scale, scaleOrientation);
    _eye = eye;
    _startRotation = rotation;
    double const distance = viewer->getCurrentView().getState().getDistance();
    osg::Vec3d const back = osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, 1.0), inverse);
    _pivot = eye - back * distance;
    return true;
}

bool iRotateViewIA::move(iIAPoint const& p)
{
    iStackedInteractor::move(p);
    iViewer* viewer = getViewer();
    if (!viewer || !getDragging())
        return true;
    double const x = _startRotation.x();
    double const y = _startRotation.y();
    double const z = _startRotation.z();
    double const w = _startRotation.w();
    double const aboutX = std::atan2(2.0 * (x * w + z * y), w * w - x * x - y * y + z * z);
    double const aboutZ = std::atan2(2.0 * (z * w + x * y), w * w + x * x - y * y - z * z);
    osg::Vec3f const offset = p.getWindowPos() - getStartPos().getWindowPos();
    osg::Matrixd const turn = osg::Matrixd::rotate(aboutX + offset.y() * 0.01, osg::Vec3d(1.0, 0.0, 0.0)) *
                              osg::Matrixd::rotate(aboutZ - offset.x() * 0.01, osg::Vec3d(0.0, 0.0, 1.0));
    double const distance = viewer->getCurrentView().getState().getDistance();
    osg::Matrixd const placement =
        osg::Matrixd::translate(0.0, 0.0, distance) * turn * osg::Matrixd::translate(osg::Vec3d(_pivot));
    viewer->setViewMatrix(osg::Matrixd::inverse(placement));
    return true;
}
