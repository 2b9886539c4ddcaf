#pragma once

#include <iModelStage/viewing/iDropCallback.h>

#include <osg/Vec3f>

class iViewer;

// Drops workbench shapes onto a viewer: a copy of each dragged shape
// enters the viewer's document at the point of the input plane under the
// cursor, as one undo step (taken by the drop interface).
//
// Payload expected under the MIME type "iapplication/dragdrop.data", as
// QDataStream items: the shape's class name ("wbBox", "wbPolyline",
// "wbCylinder" or "wbLabel") as a QString, then, as a QString, the decimal
// address of a prototype object of that class, which the dragging side
// keeps alive until the drag ends. The prototype carries the sizes and
// colour that the copy takes; its own position is replaced by the drop
// point.
class wbShapeDropCallback : public iDropCallback {
    I_CLASS(wbShapeDropCallback, iDropCallback, 1)
public:
    wbShapeDropCallback() = default;

    // Enters the callback for every shape class dropped on viewers of
    // the given class (the library's viewer is "iViewer").
    static void registerFor(char const* viewerClass);

    bool canDrop(iRoot* target, NodeList const& nodes) override;
    bool drop(iRoot* target, NodeList const& nodes) override;

    // The point of the viewer's input plane under the mouse pointer; false
    // when the pointer's ray misses the plane.
    static bool dropPoint(iViewer* viewer, osg::Vec3f& world);
};
