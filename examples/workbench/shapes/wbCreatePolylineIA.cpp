#include "shapes/wbCreatePolylineIA.h"

I_REGISTER_CLASS(wbCreatePolylineIA)
I_REGISTER_PROPERTY(wbCreatePolylineIA, bool, closed, "Geometry")

wbCreatePolylineIA::wbCreatePolylineIA()
{
    _closed = false;
    setNumSteps(-1);
    // An open-ended tool shows the first prompt while it works, the second
    // otherwise.
    addShapeSteps({"Inserire i punti (Invio, doppio clic o tasto destro per terminare)", "Polilinea inserita"});
}

iGeometricGroup* wbCreatePolylineIA::newShape()
{
    auto* shape = new wbPolyline;
    shape->set_closed(_closed);
    return shape;
}

bool wbCreatePolylineIA::move(iIAPoint const& p)
{
    bool const result = wbCreateShapeIA::move(p);
    if (placedPoints() > 0)
        polyline()->setVertex(polyline()->getNumVertices() - 1, fromOrigin(p));
    return result;
}

bool wbCreatePolylineIA::release(iIAPoint const& p)
{
    // A release without its press comes from another button, or is the
    // second half of a double click: both end the line.
    if (!getClicked()) {
        close();
        return true;
    }
    if (!polyline())
        return wbCreateShapeIA::release(p);
    if (placedPoints() == 0) {
        _origin = p.getLocalPos();
        showShapeAt(_origin);
        osg::ref_ptr<osg::Vec3Array> start = new osg::Vec3Array(2);
        polyline()->setVertices(*start);
    } else {
        if (tooClose(p))
            return refusePoint();
        polyline()->setVertex(polyline()->getNumVertices() - 1, fromOrigin(p));
        polyline()->addVertex(fromOrigin(p));
    }
    return wbCreateShapeIA::release(p);
}

void wbCreatePolylineIA::goBack()
{
    if (placedPoints() > 1)
        polyline()->removeVertex(polyline()->getNumVertices() - 2);
    else if (polyline())
        polyline()->setVertices(*osg::ref_ptr<osg::Vec3Array>(new osg::Vec3Array));
    wbCreateShapeIA::goBack();
}

void wbCreatePolylineIA::close()
{
    if (polyline()) {
        int const placed = placedPoints();
        if (placed > 0)
            polyline()->removeVertex(polyline()->getNumVertices() - 1);
        if (placed < 2 || !handOver())
            dropShape();
        _shape = nullptr;
    }
    wbCreateShapeIA::close();
}
