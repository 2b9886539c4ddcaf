#include "shapes/wbPolylineHandler.h"

#include "shapes/wbPolyline.h"

I_REGISTER_CLASS(wbPolylineHandler)

bool wbPolylineHandler::getHandles(iGeometricGroup* object, osg::Vec3Array& positions)
{
    auto* polyline = dynamic_cast<wbPolyline*>(object);
    if (!polyline || polyline->getNumVertices() == 0)
        return false;
    positions.assign(polyline->getVertices()->begin(), polyline->getVertices()->end());
    return true;
}

void wbPolylineHandler::setHandle(iGeometricGroup* object, int index, osg::Vec3f const& position)
{
    if (auto* polyline = dynamic_cast<wbPolyline*>(object))
        polyline->setVertex(index, position);
}

bool wbPolylineHandler::canDeleteHandle(iGeometricGroup* object, int)
{
    auto* polyline = dynamic_cast<wbPolyline*>(object);
    return polyline && polyline->getNumVertices() > MinimumVertices;
}

void wbPolylineHandler::deleteHandle(iGeometricGroup* object, int index)
{
    if (canDeleteHandle(object, index))
        static_cast<wbPolyline*>(object)->removeVertex(index);
}
