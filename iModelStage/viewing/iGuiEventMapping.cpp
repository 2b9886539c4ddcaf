#include <iModelStage/viewing/iGuiEventMapping.h>

int iGuiEventMapping::modifierMask(Qt::KeyboardModifiers modifiers)
{
    int mask = 0;
    if (modifiers & Qt::ShiftModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_SHIFT;
    if (modifiers & Qt::ControlModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_CTRL;
    if (modifiers & Qt::AltModifier)
        mask |= osgGA::GUIEventAdapter::MODKEY_ALT;
    return mask;
}

int iGuiEventMapping::buttonNumber(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return 1;
    case Qt::MiddleButton:
        return 2;
    case Qt::RightButton:
        return 3;
    default:
        return 0;
    }
}

osgGA::GUIEventAdapter::ScrollingMotion iGuiEventMapping::scrollMotion(int delta)
{
    return delta < 1 ? osgGA::GUIEventAdapter::SCROLL_UP : osgGA::GUIEventAdapter::SCROLL_DOWN;
}
