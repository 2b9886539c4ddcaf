#include <iModelStage/interaction/iMirrorIA.h>

#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iTransformGroup.h>

I_REGISTER_CLASS(iMirrorIA)
I_REGISTER_PROPERTY(iMirrorIA, int, axis, "Transform")

iMirrorIA::iMirrorIA()
{
    setNumSteps(-1);
    addTransformSteps({"Origine del piano"});
}

iMirrorIA::~iMirrorIA() = default;

void iMirrorIA::init()
{
    iTransformIA::init();
}

void iMirrorIA::start()
{
    iTransformIA::start();
    osg::Group* feedback = getILayer();
    feedback->removeChildren(0, feedback->getNumChildren());
    _clones.clear();
    _cloneStartMatrices.clear();
    if (iGeometricsLayer* layer = getGeometricsLayer())
        layer->cloneSelectedObjects(_clones, false, nullptr, true);
    for (osg::ref_ptr<osg::Node> const& clone : _clones) {
        feedback->addChild(clone.get());
        auto* group = dynamic_cast<iTransformGroup*>(clone.get());
        _cloneStartMatrices.push_back(group ? group->getWorldMatrix() : osg::Matrixd::identity());
    }
    applyMirror(osg::Vec3f());
    sigaxisChanged.connect(this, &iMirrorIA::slotAxisChanged);
}

void iMirrorIA::applyMirror(osg::Vec3f const& point)
{
    osg::Matrixd const t = osg::Matrixd::translate(-point);
    osg::Matrixd const s = get_axis() == 1 ? osg::Matrixd::scale(1.0, -1.0, 1.0) : osg::Matrixd::scale(-1.0, 1.0, 1.0);
    transformFromStart(_cloneStartMatrices, t * s * osg::Matrixd::inverse(t));
}

bool iMirrorIA::release(iIAPoint const& p)
{
    iInteractor::release(p);
    applyMirror(p.getGlobalPos());
    return false;
}

void iMirrorIA::slotAxisChanged(iRoot*, int)
{
    applyMirror(getLastReleasedPos().getGlobalPos());
}

void iMirrorIA::close()
{
    iGeometricsLayer* layer = getGeometricsLayer();
    if (get_makecopy() && layer) {
        for (size_t i = 0; i < _targets.size() && i < _clones.size(); ++i) {
            auto* target = dynamic_cast<iTransformGroup*>(_targets[i].get());
            auto* clone = dynamic_cast<iTransformGroup*>(_clones[i].get());
            if (!target || !clone)
                continue;
            osg::Matrixd const mirrored = target->getWorldMatrix();
            target->setWorldMatrix(_cloneStartMatrices[i]);
            clone->setWorldMatrix(mirrored);
            getILayer()->removeChild(clone);
            layer->addObject(clone, true);
        }
    }
    iInteractor::close();
}

void iMirrorIA::cancel()
{
    transformFromStart(_cloneStartMatrices, osg::Matrixd::identity());
    iTransformIA::cancel();
}
