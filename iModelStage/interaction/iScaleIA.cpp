#include <iModelStage/interaction/iScaleIA.h>

#include <iModelStage/geometry/iGeometricBuilder.h>

I_REGISTER_CLASS(iScaleIA)

iScaleIA::iScaleIA() : _feedback(new osg::Geode)
{
    setNumSteps(2);
    addTransformSteps({"Origine", "Fattore di scala", "Oggetti scalati"});
}

iScaleIA::~iScaleIA() = default;

void iScaleIA::init()
{
    iTransformIA::init();
    getILayer()->addChild(_feedback.get());
}

bool iScaleIA::move(iIAPoint const& p)
{
    iInteractor::move(p);
    if (getCurrentStep() != 1)
        return false;
    osg::Vec3f const o = getLastReleasedPos().getLocalPos();
    osg::Vec3f const at = p.getLocalPos();
    osg::Matrixd const t = osg::Matrixd::translate(-o);
    osg::Matrixd const s = osg::Matrixd::scale(at.x() - o.x() + 1.0, at.y() - o.y() + 1.0, 1.0);
    transformFromStart(_startMatrices, t * s * osg::Matrixd::inverse(t));
    _feedback->removeDrawables(0, _feedback->getNumDrawables());
    _feedback->addDrawable(iGeometricBuilder::buildLine(o, at, osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f)));
    return false;
}

bool iScaleIA::release(iIAPoint const& p)
{
    iTransformIA::release(p);
    setLastReleasedPos(p);
    return false;
}

void iScaleIA::goBack()
{
    if (getCurrentStep() == 1)
        _feedback->removeDrawables(0, _feedback->getNumDrawables());
    iTransformIA::goBack();
}
