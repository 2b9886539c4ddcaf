#include <iModelStage/interaction/iTranslateIA.h>

#include <iModelStage/model/iTransformGroup.h>

I_REGISTER_CLASS(iTranslateIA)

iTranslateIA::iTranslateIA()
{
    setNumSteps(2);
    addTransformSteps({"Dal punto", "Al punto", "Oggetti spostati"});
}

iTranslateIA::~iTranslateIA() = default;

bool iTranslateIA::move(iIAPoint const& p)
{
    iInteractor::move(p);
    if (getCurrentStep() == 1) {
        osg::Vec3f const delta = p.getLocalPos() - getLastReleasedPos().getLocalPos();
        for (osg::ref_ptr<osg::Node> const& target : _targets)
            if (auto* group = dynamic_cast<iTransformGroup*>(target.get()))
                group->setWorldMatrix(group->getWorldMatrix() * osg::Matrixd::translate(delta));
    }
    setLastReleasedPos(p);
    return false;
}

bool iTranslateIA::release(iIAPoint const& p)
{
    iTransformIA::release(p);
    setLastReleasedPos(p);
    return false;
}
