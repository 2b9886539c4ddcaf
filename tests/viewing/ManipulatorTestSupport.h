#ifndef IMODELSTAGE_TESTS_VIEWING_MANIPULATORTESTSUPPORT_H
#define IMODELSTAGE_TESTS_VIEWING_MANIPULATORTESTSUPPORT_H

#include <osg/ref_ptr>
#include <osgGA/GUIActionAdapter>
#include <osgGA/GUIEventAdapter>

// Records what a handler asks of its host.
class RecordingActions : public osgGA::GUIActionAdapter {
public:
    void requestRedraw() override { ++redraws; }
    void requestContinuousUpdate(bool needed) override { continuous = needed; }
    void requestWarpPointer(float, float) override {}

    int redraws = 0;
    bool continuous = false;
};

// A pointer event at normalised (x, y), y growing upwards.
inline osg::ref_ptr<osgGA::GUIEventAdapter> pointerEvent(osgGA::GUIEventAdapter::EventType type, float x, float y,
                                                         double time, unsigned int buttons, unsigned int modifiers = 0)
{
    osg::ref_ptr<osgGA::GUIEventAdapter> event = new osgGA::GUIEventAdapter;
    event->setEventType(type);
    event->setInputRange(-1.0f, -1.0f, 1.0f, 1.0f);
    event->setMouseYOrientation(osgGA::GUIEventAdapter::Y_INCREASING_UPWARDS);
    event->setX(x);
    event->setY(y);
    event->setTime(time);
    event->setButtonMask(buttons);
    event->setModKeyMask(modifiers);
    return event;
}

inline osg::ref_ptr<osgGA::GUIEventAdapter> plainEvent(osgGA::GUIEventAdapter::EventType type, double time, int key = 0)
{
    osg::ref_ptr<osgGA::GUIEventAdapter> event = new osgGA::GUIEventAdapter;
    event->setEventType(type);
    event->setTime(time);
    event->setKey(key);
    return event;
}

#endif
