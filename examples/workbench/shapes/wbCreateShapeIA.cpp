#include "shapes/wbCreateShapeIA.h"

#include <iModelStage/dimensioning/iQuoteHandOver.h>
#include <iModelStage/frame/iTranslate.h>

#include <osg/Matrixd>

I_REGISTER_CLASS(wbCreateShapeIA)

wbCreateShapeIA::wbCreateShapeIA() = default;

wbCreateShapeIA::~wbCreateShapeIA() = default;

void wbCreateShapeIA::addShapeSteps(std::initializer_list<char const*> prompts)
{
    for (char const* prompt : prompts)
        addStep(QString::fromUtf8(iTranslate(prompt)), iIATypeVec3, osg::Vec3f());
}

void wbCreateShapeIA::start()
{
    iInteractor::start();
    if (!_shape.valid())
        _shape = newShape();
}

void wbCreateShapeIA::showShapeAt(osg::Vec3f const& local)
{
    if (!_shape.valid())
        return;
    _shape->setMatrix(osg::Matrixd::translate(osg::Vec3d(local)));
    if (!getILayer()->containsNode(_shape.get()))
        getILayer()->addChild(_shape.get());
    _shape->updateGeometry(false);
}

void wbCreateShapeIA::dropShape()
{
    if (_shape.valid())
        getILayer()->removeChild(_shape.get());
}

void wbCreateShapeIA::goBack()
{
    if (getCurrentStep() == 1)
        dropShape();
    iInteractor::goBack();
}

void wbCreateShapeIA::cancel()
{
    dropShape();
    _shape = nullptr;
    iInteractor::cancel();
}

void wbCreateShapeIA::end()
{
    handOver();
    iInteractor::end();
}

bool wbCreateShapeIA::handOver()
{
    if (!_shape.valid() || !getILayer()->containsNode(_shape.get()))
        return false;
    storeForUndo(getClassAlias());
    bool const added = iQuoteHandOver::handOver(_shape.get(), getGeometricsLayer(), getILayer(), false);
    _shape = nullptr;
    return added;
}

bool wbCreateShapeIA::refusePoint()
{
    emitMessage(QString::fromUtf8(iTranslate("Punto troppo vicino al precedente, indicare un altro punto")),
                iIAMessageError);
    return true;
}

double wbCreateShapeIA::planeDistance(iIAPoint const& p) const
{
    osg::Vec3f delta = p.getLocalPos() - getLastReleasedPos().getLocalPos();
    delta.z() = 0.0f;
    return delta.length();
}

bool wbCreateShapeIA::tooClose(iIAPoint const& p) const
{
    return planeDistance(p) < MinimumSide;
}

double wbCreateShapeIA::heightTo(iIAPoint const& p, double fallback) const
{
    return tooClose(p) ? fallback : planeDistance(p);
}
