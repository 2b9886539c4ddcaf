#pragma once

#include "shapes/wbCreateShapeIA.h"
#include "shapes/wbPolyline.h"

#include <algorithm>

// Draws a polyline through the clicked points until Enter, a right click
// (in a view that does not take the right button for itself) or a double
// click ends it; Escape cancels it, Backspace takes back the last point.
// The polyline's origin is its first point. Ended with fewer than two
// points, it makes nothing.
class wbCreatePolylineIA : public wbCreateShapeIA {
    I_CLASS(wbCreatePolylineIA, wbCreateShapeIA, 1)
    I_PROPERTY(bool, closed)
public:
    wbCreatePolylineIA();

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void goBack() override;
    void close() override;

protected:
    iGeometricGroup* newShape() override;

private:
    wbPolyline* polyline() { return static_cast<wbPolyline*>(_shape.get()); }
    osg::Vec3f fromOrigin(iIAPoint const& p) const { return p.getLocalPos() - _origin; }
    // The placed points and, while drawing, the one that follows the
    // cursor as the last vertex.
    int placedPoints() { return polyline() ? std::max(polyline()->getNumVertices() - 1, 0) : 0; }

    osg::Vec3f _origin;
};
