#include <iModelStage/viewing/iViewer.h>

#include <iModelStage/interaction/iInteractor.h>
#include <iModelStage/interaction/iInteractorManager.h>
#include <iModelStage/viewing/iViewerEventHandler.h>
#include <iModelStage/viewing/iViewerSliderButton.h>

#include <cstring>

namespace {

iIAPoint windowPoint(int x, int y)
{
    return iIAPoint(osg::Vec3f(), osg::Vec3f(float(x), float(y), 0.0f), osg::Vec3f(), osg::Vec3f());
}

} // namespace

void iViewer::startDragTool(char const* className, int x, int y)
{
    iInteractor* tool = iViewerEventHandler::newTool(className);
    if (!tool)
        return;
    tool->setViewer(this);
    if (!iViewerEventHandler::pushNewTool(tool))
        return;
    tool->start();
    tool->click(windowPoint(x, y));
}

void iViewer::moveDragTool(int x, int y, int dx, int dy)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    if (iInteractor* current = manager ? manager->getCurrentInteractor() : nullptr)
        current->move(windowPoint(x + dx, y + dy));
}

void iViewer::endDragTool(char const* className)
{
    iInteractorManager* manager = iInteractorManager::getInteractorManager();
    iInteractor* current = manager ? manager->getCurrentInteractor() : nullptr;
    if (current && std::strcmp(current->getClassName(), className) == 0)
        manager->popInteractor();
}

void iViewer::slotPanInteractive(int x, int y)
{
    startDragTool("iPanIA", x, y);
}

void iViewer::slotRotateInteractive(int x, int y)
{
    startDragTool("iRotateViewIA", x, y);
}

void iViewer::slotZoomInteractive(int x, int y)
{
    startDragTool("iZoomInteractiveIA", x, y);
}

void iViewer::slotPanInteractiveMoved(int x, int y, int dx, int dy)
{
    moveDragTool(x, y, dx, dy);
}

void iViewer::slotRotateInteractiveMoved(int x, int y, int dx, int dy)
{
    moveDragTool(x, y, dx, dy);
}

void iViewer::slotZoomInteractiveMoved(int x, int y, int dx, int dy)
{
    moveDragTool(x, y, dx, dy);
}

void iViewer::slotPanInteractiveReleased()
{
    endDragTool("iPanIA");
}

void iViewer::slotRotateInteractiveReleased()
{
    endDragTool("iRotateViewIA");
}

void iViewer::slotZoomInteractiveReleased()
{
    endDragTool("iZoomInteractiveIA");
}

void iViewer::slotZoomAll()
{
    iViewerEventHandler::pushNewTool(iViewerEventHandler::newTool("iZoomAllIA"));
}

void iViewer::slotZoomSelected()
{
    iViewerEventHandler::pushNewTool(iViewerEventHandler::newTool("iZoomSelectedIA"));
}

void iViewer::slotZoomWindow()
{
    iInteractor* tool = iViewerEventHandler::newTool("iZoomWindowIA");
    if (!tool)
        return;
    tool->setViewer(this);
    if (iViewerEventHandler::pushNewTool(tool))
        tool->start();
}

void iViewer::connectViewButtons()
{
    m_viewButtons[0]->sigReleased.connect(this, &iViewer::slotZoomAll);
    m_viewButtons[1]->sigReleased.connect(this, &iViewer::slotZoomSelected);
    m_viewButtons[2]->sigReleased.connect(this, &iViewer::slotZoomWindow);

    struct DragSlots {
        void (iViewer::*pressed)(int, int);
        void (iViewer::*moved)(int, int, int, int);
        void (iViewer::*released)();
    };
    DragSlots const drags[3] = {
        {&iViewer::slotPanInteractive, &iViewer::slotPanInteractiveMoved, &iViewer::slotPanInteractiveReleased},
        {&iViewer::slotRotateInteractive, &iViewer::slotRotateInteractiveMoved,
         &iViewer::slotRotateInteractiveReleased},
        {&iViewer::slotZoomInteractive, &iViewer::slotZoomInteractiveMoved, &iViewer::slotZoomInteractiveReleased},
    };
    for (int i = 0; i < 3; ++i) {
        auto* slider = dynamic_cast<iViewerSliderButton*>(m_viewButtons[3 + i]);
        if (!slider)
            continue;
        slider->sigSliderPressed.connect(this, drags[i].pressed);
        slider->sigSliderMoved.connect(this, drags[i].moved);
        slider->sigReleased.connect(this, drags[i].released);
    }
}
