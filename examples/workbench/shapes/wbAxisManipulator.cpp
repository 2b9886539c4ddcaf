#include "shapes/wbAxisManipulator.h"

#include "shapes/wbAxisTranslateIA.h"

#include <iModelStage/geometry/iGeometricBuilder.h>
#include <iModelStage/interaction/iInteractorManager.h>

#include <osg/AutoTransform>
#include <osg/Geode>
#include <osg/LineWidth>

#include <limits>

I_REGISTER_CLASS(wbAxisManipulator)

wbAxisManipulator::wbAxisManipulator()
{
    setActive(true);
}

wbAxisManipulator::wbAxisManipulator(wbAxisManipulator const& other, osg::CopyOp const& copyop)
    : iBaseManipulator(other, copyop), _axis(other._axis)
{
    setActive(true);
}

wbAxisManipulator::~wbAxisManipulator() = default;

void wbAxisManipulator::setAxis(int axis)
{
    _axis = (axis == 1 || axis == 2) ? axis : 0;
}

void wbAxisManipulator::buildGeometry()
{
    removeChildren(0, getNumChildren());
    osg::Vec3f direction;
    direction[_axis] = 1.0f;
    osg::Vec4f color(0.1f, 0.1f, 0.1f, 1.0f);
    color[_axis] = 0.9f;
    osg::Vec3f const up = _axis == 2 ? osg::Vec3f(0.0f, 1.0f, 0.0f) : osg::Vec3f(0.0f, 0.0f, 1.0f);

    auto* geode = new osg::Geode;
    geode->addDrawable(iGeometricBuilder::buildArrow(osg::Vec3f(), direction * Length, up, HeadLength, HeadWidth, color));
    osg::StateSet* state = geode->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    state->setAttributeAndModes(new osg::LineWidth(3.0f));
    state->setRenderBinDetails(10000, "RenderBin");

    // One unit is one pixel.
    auto* screen = new osg::AutoTransform;
    screen->setAutoScaleToScreen(true);
    screen->setMinimumScale(0.0);
    screen->setMaximumScale(double(std::numeric_limits<float>::max()));
    screen->addChild(geode);
    addChild(screen);
}

iInteractor* wbAxisManipulator::execute(iIAPoint const& point, unsigned int keyMods)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (!manager)
        return nullptr;
    auto* tool = new wbAxisTranslateIA;
    tool->setAxis(_axis);
    if (!manager->pushInteractor(tool, false))
        return nullptr;
    // The grab is the move's first point: the targets follow the pointer
    // from the gizmo's origin at once.
    osg::Vec3f const global = point.getGlobalPos();
    osg::Vec3f const local = osg::Vec3f(osg::Vec3d(global) * tool->getWorldToLocalMatrix());
    iIAPoint const first(osg::Vec3f(), osg::Vec3f(), local, global);
    tool->setKeyModifiers(keyMods);
    tool->start();
    tool->click(first);
    tool->release(first);
    return tool;
}
