#ifndef IMODELSTAGE_VIEWING_IGUIEVENTMAPPING_H
#define IMODELSTAGE_VIEWING_IGUIEVENTMAPPING_H

#include <iModelStage/frame/iExport.h>

#include <Qt>

#include <osgGA/GUIEventAdapter>

// How Qt input reads as OSG input in both GL widgets: one mapping, so that
// the two never disagree.
class IMODELSTAGE_EXPORT iGuiEventMapping {
public:
    // Shift 3, Ctrl 12, Alt 48, both sides of each; Meta and keypad are
    // not told.
    static int modifierMask(Qt::KeyboardModifiers modifiers);
    // Left 1, middle 2, right 3; 0 for any other button.
    static int buttonNumber(Qt::MouseButton button);
    // A delta below 1, zero included, scrolls up.
    static osgGA::GUIEventAdapter::ScrollingMotion scrollMotion(int delta);
};

#endif
