#include <iModelStage/viewing/iViewerEventHandler.h>

#include <iModelStage/dimensioning/iPointQuote.h>
#include <iModelStage/editing/iBaseManipulator.h>
#include <iModelStage/editing/iManipulatorsManager.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/interaction/iIAPointBuilder.h>
#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorInputHandler.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/viewing/iViewer.h>
#include <iModelStage/viewing/iViewerBaseButton.h>
#include <iModelStage/viewing/iViewerButtonsLayout.h>

#include <QRectF>

#include <sstream>

#include <osg/Geode>
#include <osg/Geometry>
#include <osg/LineStipple>

bool iViewerEventHandler::orthoenabled = false;
osg::ref_ptr<osg::MatrixTransform> iViewerEventHandler::s_cross;
osg::observer_ptr<iGeometricsLayer> iViewerEventHandler::s_lastLayer;
osg::ref_ptr<iPointQuote> iViewerEventHandler::s_snapLabel;

namespace {

typedef osgGA::GUIEventAdapter Event;

osg::Vec2i wholePoint(Event const& ea)
{
    return osg::Vec2i(static_cast<int>(ea.getX()), static_cast<int>(ea.getY()));
}

// Two long dashed grey lines through the origin of the input plane.
osg::MatrixTransform* makeConstructionCross()
{
    auto* cross = new osg::MatrixTransform;
    auto* geode = new osg::Geode;
    osg::StateSet* state = geode->getOrCreateStateSet();
    unsigned int const protectedOff = osg::StateAttribute::PROTECTED | osg::StateAttribute::OFF;
    state->setMode(GL_LIGHTING, protectedOff);
    state->setMode(GL_DEPTH_TEST, protectedOff);
    state->setMode(GL_BLEND, protectedOff);
    state->setRenderingHint(osg::StateSet::OPAQUE_BIN);
    state->setAttributeAndModes(new osg::LineStipple(1, 0x0FFF),
                                osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);

    auto* geometry = new osg::Geometry;
    auto* vertices = new osg::Vec3Array;
    vertices->push_back(osg::Vec3(-5000.0f, 0.0f, 0.0f));
    vertices->push_back(osg::Vec3(5000.0f, 0.0f, 0.0f));
    vertices->push_back(osg::Vec3(0.0f, 5000.0f, 0.0f));
    vertices->push_back(osg::Vec3(0.0f, -5000.0f, 0.0f));
    geometry->setVertexArray(vertices);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 2));
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 2, 2));
    auto* colours = new osg::Vec4Array;
    colours->push_back(osg::Vec4(0.8f, 0.8f, 0.8f, 0.85f));
    colours->push_back(osg::Vec4(0.8f, 0.8f, 0.8f, 0.85f));
    geometry->setColorArray(colours, osg::Array::BIND_PER_PRIMITIVE_SET);
    geode->addDrawable(geometry);
    cross->addChild(geode);
    return cross;
}

// Right button: Shift pans, Ctrl zooms, alone it rotates; only the
// axonometric lookup rotates.
char const* rightButtonTool(unsigned int code, int lookup)
{
    if (code == 2 && lookup <= iView::iLookupAxonometric)
        return "iPanIA";
    if (code == 1 && lookup <= iView::iLookupAxonometric)
        return "iZoomInteractiveIA";
    if (code != 1 && code != 2 && lookup == iView::iLookupAxonometric)
        return "iRotateViewIA";
    return nullptr;
}

bool isLeft(Event const& ea)
{
    return ea.getButton() == Event::LEFT_MOUSE_BUTTON;
}

} // namespace

bool iViewerEventHandler::getOrthoEnabled()
{
    return orthoenabled;
}

void iViewerEventHandler::setOrthoEnabled(bool on)
{
    orthoenabled = on;
}

void iViewerEventHandler::giveFocus(iViewer* viewer)
{
    if (!viewer->hasFocus())
        viewer->setFocus();
}

bool iViewerEventHandler::handle(Event const& ea, osgGA::GUIActionAdapter& aa, osg::Object*, osg::NodeVisitor*)
{
    auto* viewer = dynamic_cast<iViewer*>(&aa);
    if (!viewer)
        return false;
    if (processViewButtons(viewer, ea, aa))
        return true;

    auto* layer = dynamic_cast<iGeometricsLayer*>(viewer->getViewModel());
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (!manager || !layer)
        return false;
    iInteractor* interactor = manager->getCurrentInteractor();
    if (!interactor)
        return false;

    if (viewer->getLockInteractors()) {
        // The view buttons work; the tool only learns where it is.
        manager->setCurrentViewer(viewer);
        interactor->setViewer(viewer);
        if (!interactor->getGeometricsLayer())
            interactor->setGeometricsLayer(layer);
        if (ea.getEventType() == Event::MOVE)
            giveFocus(viewer);
        return false;
    }

    iIAPointBuilder builder(viewer, interactor, ea.getX(), ea.getY(), ea.getXnormalized(), ea.getYnormalized());
    osg::Vec3f point = interactor->getCurrentPos().getGlobalPos();
    builder.intersectIPlane(point);
    bool const idle = interactor->getState() == iInteractor::iIAStateIdle;

    iManipulatorsManager* manipulators = iManipulatorsManager::getInstance();
    if (!manipulators->getGeometricsLayer())
        manipulators->setGeometricsLayer(layer);
    if (processManipulators(viewer, interactor, ea, builder.makePoint(point)))
        return true;

    manager->setCurrentViewer(viewer);
    interactor->setViewer(viewer);
    if (!interactor->isGeometryLayerLocked())
        interactor->setGeometricsLayer(layer);

    osg::Group* interactive = layer->getInteractiveLayer();
    if (interactive)
        interactive->removeChild(s_snapLabel.get());
    builder.constrain(point);
    if (builder.getSnap() && interactive)
        showSnapLabel(interactive, builder.getSnapAlias(), builder.getRawPoint());
    attachConstructionCross(layer);
    iIAPoint const p = builder.makePoint(point);
    placeConstructionCross(layer, interactor, p);
    if (idle) {
        interactor->start();
        interactor->move(p);
    }
    s_lastLayer = layer;
    interactor->setKeyModifiers(getKeyMod(ea));
    return dispatch(viewer, layer, interactor, ea, p);
}

// The snap that acted, and where, written beside the snapped point; first
// among the interactive objects so that it draws over what the tool shows.
void iViewerEventHandler::showSnapLabel(osg::Group* interactive, std::string const& alias, osg::Vec3f const& at)
{
    if (!s_snapLabel.valid())
        s_snapLabel = new iPointQuote;
    std::ostringstream text;
    text << alias << " (" << at.x() << ", " << at.y() << ", " << at.z() << ")";
    s_snapLabel->setText(text.str());
    s_snapLabel->setPosition(at);
    s_snapLabel->updateGeometry(false);
    interactive->insertChild(0, s_snapLabel.get());
}

void iViewerEventHandler::attachConstructionCross(iGeometricsLayer* layer)
{
    osg::Group* planes = layer->getIPlanes();
    if (!planes)
        return;
    if (!s_cross.valid())
        s_cross = makeConstructionCross();
    iGeometricsLayer* last = s_lastLayer.get();
    if (last == layer && s_cross->getNumParents() > 0)
        return;
    // A layer that went away took the cross out with it.
    if (last && last->getIPlanes())
        last->getIPlanes()->removeChild(s_cross.get());
    if (!planes->containsNode(s_cross.get()))
        planes->addChild(s_cross.get());
}

void iViewerEventHandler::placeConstructionCross(iGeometricsLayer* layer, iInteractor* interactor,
                                                 iIAPoint const& point)
{
    iViewer* viewer = interactor->getViewer();
    iInputPlane* plane = viewer ? viewer->getIPlane() : nullptr;
    if (!interactor->getAllowConstructionLines() || !plane) {
        layer->setNodeFlag(s_cross.get(), 0, false);
        return;
    }
    osg::Vec3f const local = point.getGlobalPos() * plane->getInverseMatrix();
    s_cross->setMatrix(osg::Matrixd::translate(local) * plane->getMatrix());
    layer->setNodeFlag(s_cross.get(), 0, true);
}

unsigned int iViewerEventHandler::getKeyMod(Event const& ea)
{
    unsigned int const mask = ea.getModKeyMask();
    unsigned int code = 0;
    if (mask & 12u)
        code |= 1u;
    if (mask & 3u)
        code |= 2u;
    if (mask & 48u)
        code |= 4u;
    return code;
}

bool iViewerEventHandler::dispatch(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor,
                                   Event const& ea, iIAPoint const& point)
{
    switch (ea.getEventType()) {
    case Event::PUSH:
        return onPush(viewer, layer, interactor, ea, point);
    case Event::RELEASE:
        return onRelease(viewer, interactor, ea, point);
    case Event::DRAG:
        return !interactor->move(point);
    case Event::MOVE:
        giveFocus(viewer);
        return interactor->move(point);
    case Event::KEYDOWN:
        return onKeyDown(viewer, layer, interactor, ea.getKey());
    case Event::KEYUP:
        return interactor->keyReleased(ea.getKey());
    case Event::SCROLL:
        viewer->zoomFactor(ea.getScrollingMotion() == Event::SCROLL_UP ? 0.1 : -0.1);
        return false;
    default:
        return false;
    }
}

bool iViewerEventHandler::onPush(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor,
                                 Event const& ea, iIAPoint const& point)
{
    unsigned int const mask = ea.getButtonMask();
    if (mask == Event::LEFT_MOUSE_BUTTON && layer != iLayersManager::getCurrentLayer())
        iLayersManager::setCurrentLayer(layer->getName());

    int const lookup = viewer->getCurrentViewLookup();
    unsigned int const code = interactor->getKeyModifiers();
    switch (mask) {
    case Event::LEFT_MOUSE_BUTTON:
        return interactor->click(point);
    case Event::MIDDLE_MOUSE_BUTTON:
        // In the free lookup the camera manipulator has these buttons.
        if (lookup > iView::iLookupAxonometric)
            return false;
        pushTool("iPanIA", nullptr, code, &point, false);
        return true;
    case Event::RIGHT_MOUSE_BUTTON:
        if (char const* tool = rightButtonTool(code, lookup)) {
            pushTool(tool, viewer, code, &point, false);
            return true;
        }
        return false;
    default:
        return false;
    }
}

bool iViewerEventHandler::onRelease(iViewer* viewer, iInteractor* interactor, Event const& ea,
                                    iIAPoint const& point)
{
    int const button = ea.getButton();
    if (viewer->getCurrentViewLookup() > iView::iLookupAxonometric)
        return button == Event::LEFT_MOUSE_BUTTON && interactor->release(point);
    bool const known = button == Event::LEFT_MOUSE_BUTTON || button == Event::MIDDLE_MOUSE_BUTTON ||
                       button == Event::RIGHT_MOUSE_BUTTON;
    return known && interactor->release(point);
}

bool iViewerEventHandler::onKeyDown(iViewer* viewer, iGeometricsLayer* layer, iInteractor* interactor, int key)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    iInteractorInputHandler* input = manager->getInputHandler();
    bool const free = !input || !input->isBusy();
    unsigned int const code = interactor->getKeyModifiers();

    switch (key) {
    case iKeyEscape:
        interactor->cancel();
        return false;
    case iKeyReturn:
        if (interactor->canAccept() && free) {
            interactor->close();
            return false;
        }
        if (input) {
            input->setBusy(false);
            return false;
        }
        break;
    case iKeyBackSpace:
        if (free) {
            interactor->goBack();
            return false;
        }
        break;
    case iKeySpace:
        if (free) {
            viewer->resetToHome();
            return false;
        }
        break;
    case iKeyA:
        pushTool("iZoomAllIA", nullptr, code, nullptr, false);
        return false;
    case iKeyS:
        pushTool("iZoomSelectedIA", nullptr, code, nullptr, false);
        return false;
    case iKeyW:
        pushTool("iZoomWindowIA", viewer, code, nullptr, true);
        return false;
    case iKeyZ:
        pushTool("iZoomInteractiveIA", viewer, code, nullptr, true);
        return false;
    case iKeyDelete: {
        iGeometricsLayer* target = manager->getGeometricsLayer();
        (target ? target : layer)->removeSelectedObjects();
        return false;
    }
    default:
        break;
    }
    if (!free)
        return false;
    if (key == iKeyShiftS)
        return true;
    return interactor->keyPressed(key);
}

iInteractor* iViewerEventHandler::newTool(char const* className)
{
    if (!iInteractorManager::getInteractorManager())
        return nullptr;
    iRoot* made = iRoot::newClass(className);
    auto* tool = dynamic_cast<iInteractor*>(made);
    if (!tool)
        delete made;
    return tool;
}

bool iViewerEventHandler::pushNewTool(iInteractor* tool)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (!tool || !manager)
        return false;
    // A refused second stacked tool of one class is deleted by the push;
    // any other refusal leaves the tool to its maker.
    iInteractor* current = manager->getCurrentInteractor();
    bool const deletedByPush =
        current && tool->isStacked() && std::string(current->getClassName()) == tool->getClassName();
    if (manager->pushInteractor(tool, true))
        return true;
    if (!deletedByPush)
        delete tool;
    return false;
}

void iViewerEventHandler::pushTool(char const* className, iViewer* viewer, unsigned int keyMods,
                                   iIAPoint const* click, bool startAfterPush)
{
    iInteractor* tool = newTool(className);
    if (!tool)
        return;
    tool->setKeyModifiers(keyMods);
    if (viewer)
        tool->setViewer(viewer);
    if (click) {
        tool->start();
        tool->click(*click);
    }
    if (pushNewTool(tool) && startAfterPush)
        tool->start();
}

iViewerBaseButton* iViewerEventHandler::getButton(iViewer* viewer, int x, int y)
{
    iViewerButtonsLayout* layout = viewer->getButtonsLayout();
    if (!layout)
        return nullptr;
    for (int pos = iViewerButtonsLayout::iButtonsTopLeft; pos <= iViewerButtonsLayout::iButtonsBottomRight; ++pos) {
        for (osg::ref_ptr<osg::Node> const& node :
             layout->getButtons(static_cast<iViewerButtonsLayout::iViewerButtonPos>(pos))) {
            auto* button = dynamic_cast<iViewerBaseButton*>(node.get());
            if (!button || !button->getVisible())
                continue;
            osg::Vec3d const scale = button->getScale();
            QRectF const rect(button->getX(), button->getY(), button->getWidth() * scale.x(),
                              button->getHeight() * scale.y());
            if (rect.contains(x, y))
                return button;
        }
    }
    return nullptr;
}

bool iViewerEventHandler::processViewButtons(iViewer* viewer, Event const& ea, osgGA::GUIActionAdapter&)
{
    osg::Vec2i const point = wholePoint(ea);
    iViewerBaseButton* captured = viewer->getCapturedButton();
    switch (ea.getEventType()) {
    case Event::PUSH: {
        if (!isLeft(ea) || captured)
            return false;
        iViewerBaseButton* button = getButton(viewer, point.x(), point.y());
        if (!button)
            return false;
        viewer->setCapturedButton(button);
        button->mousePressEvent(0, point);
        return true;
    }
    case Event::RELEASE:
        if (!isLeft(ea) || !captured)
            return false;
        captured->mouseReleaseEvent(0, point);
        viewer->setCapturedButton(nullptr);
        return true;
    case Event::DRAG:
        if (!captured)
            return false;
        captured->mouseMoveEvent(point);
        return true;
    case Event::MOVE: {
        if (captured)
            return false;
        iViewerBaseButton* button = getButton(viewer, point.x(), point.y());
        iViewerBaseButton* hover = viewer->getHoverButton();
        if (button && button != hover) {
            if (hover)
                hover->mouseLeaveEvent(point);
            button->mouseEnterEvent(point);
            viewer->setHoverButton(button);
        } else if (!button && hover) {
            hover->mouseLeaveEvent(point);
            viewer->setHoverButton(nullptr);
        }
        return false;
    }
    default:
        return false;
    }
}

bool iViewerEventHandler::processManipulators(iViewer* viewer, iInteractor* interactor, Event const& ea,
                                              iIAPoint const&)
{
    // Only an idle tool, or a persistent one not yet clicked, lets a
    // gizmo take the pointer.
    int const state = interactor->getState();
    if (state == iInteractor::iIAStateWorking ||
        (state == iInteractor::iIAStateStarted && !interactor->isPersistent()))
        return false;
    iBaseManipulator* current = iManipulatorsManager::getInstance()->getCurrentManipulator();
    if (!current || current->inProgress())
        return false;

    switch (ea.getEventType()) {
    case Event::PUSH: {
        if (!isLeft(ea))
            return false;
        iBaseManipulator* hit = findChildManipulator(viewer, ea.getX(), ea.getY());
        return hit && hit->isActive();
    }
    case Event::RELEASE: {
        if (!isLeft(ea))
            return false;
        iBaseManipulator* hit = findChildManipulator(viewer, ea.getX(), ea.getY());
        if (!hit)
            return false;
        osg::Vec3f const origin = osg::Vec3f() * hit->getWorldMatrix();
        iIAPoint const at(osg::Vec3f(), osg::Vec3f(), osg::Vec3f(), origin);
        return hit->start(at, getKeyMod(ea));
    }
    case Event::MOVE:
        giveFocus(viewer);
        return false;
    default:
        return false;
    }
}

iBaseManipulator* iViewerEventHandler::findChildManipulator(iViewer* viewer, float x, float y)
{
    osg::ref_ptr<osgUtil::PolytopeIntersector> picker =
        new osgUtil::PolytopeIntersector(osgUtil::Intersector::WINDOW, x - 5.0, y - 5.0, x + 5.0, y + 5.0);
    osgUtil::IntersectionVisitor visitor(picker.get());
    viewer->getCamera()->accept(visitor);
    if (!picker->containsIntersections())
        return nullptr;
    osgUtil::PolytopeIntersector::Intersections const hits = picker->getIntersections();
    for (osgUtil::PolytopeIntersector::Intersection const& hit : hits) {
        for (osg::Node* node : hit.nodePath) {
            auto* manipulator = dynamic_cast<iBaseManipulator*>(node);
            if (!manipulator)
                continue;
            for (osg::ref_ptr<osg::Node> const& child : manipulator->getChildManipulators())
                for (osg::Node* onPath : hit.nodePath)
                    if (onPath == child.get())
                        return static_cast<iBaseManipulator*>(child.get());
            return manipulator;
        }
    }
    return nullptr;
}
