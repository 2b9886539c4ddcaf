#include <iModelStage/interaction/iRotateIA.h>

#include <iModelStage/geometry/iGeometricBuilder.h>
#include <iModelStage/model/iTransformGroup.h>

#include <algorithm>
#include <cmath>

I_REGISTER_CLASS(iRotateIA)

namespace {

void drawLine(osg::Geode* geode, osg::Vec3f const& a, osg::Vec3f const& b)
{
    geode->removeDrawables(0, geode->getNumDrawables());
    geode->addDrawable(iGeometricBuilder::buildLine(a, b, osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f)));
}

} // namespace

iRotateIA::iRotateIA() : _axisFeedback(new osg::Geode), _angleFeedback(new osg::Geode)
{
    setNumSteps(3);
    addTransformSteps({"Origine", "Asse di rotazione", "Angolo", "Oggetti ruotati"});
}

iRotateIA::~iRotateIA() = default;

void iRotateIA::init()
{
    iTransformIA::init();
    getILayer()->addChild(_axisFeedback.get());
    getILayer()->addChild(_angleFeedback.get());
}

bool iRotateIA::release(iIAPoint const& p)
{
    if (getCurrentStep() == 0) {
        _origin = p.getLocalPos();
    } else if (getCurrentStep() == 1) {
        _reference = p.getLocalPos() - _origin;
        _reference.normalize();
        _angleStartMatrices.clear();
        for (osg::ref_ptr<osg::Node> const& target : _targets) {
            auto* group = dynamic_cast<iTransformGroup*>(target.get());
            _angleStartMatrices.push_back(group ? group->getWorldMatrix() : osg::Matrixd::identity());
        }
    }
    return iTransformIA::release(p);
}

bool iRotateIA::move(iIAPoint const& p)
{
    iInteractor::move(p);
    osg::Vec3f const at = p.getLocalPos();
    if (getCurrentStep() == 1) {
        drawLine(_axisFeedback.get(), _origin, at);
    } else if (getCurrentStep() == 2) {
        drawLine(_angleFeedback.get(), _origin, at);
        osg::Vec3f d = at - _origin;
        d.normalize();
        double angle = std::acos(std::clamp(double(d * _reference), -1.0, 1.0));
        if (d.y() <= 0.0f)
            angle = -angle;
        osg::Matrixd const r = osg::Matrixd::rotate(angle, osg::Vec3d(0.0, 0.0, 1.0)) * getLocalToWorldMatrix();
        osg::Matrixd const t = osg::Matrixd::translate(-_origin);
        transformFromStart(_angleStartMatrices, t * r * osg::Matrixd::inverse(t));
    }
    setLastReleasedPos(p);
    return false;
}

void iRotateIA::goBack()
{
    if (getCurrentStep() == 1)
        _axisFeedback->removeDrawables(0, _axisFeedback->getNumDrawables());
    else if (getCurrentStep() == 2)
        _angleFeedback->removeDrawables(0, _angleFeedback->getNumDrawables());
    iTransformIA::goBack();
}

void iRotateIA::cancel()
{
    if (_angleStartMatrices.size() == _targets.size())
        transformFromStart(_angleStartMatrices, osg::Matrixd::identity());
    iTransformIA::cancel();
}
