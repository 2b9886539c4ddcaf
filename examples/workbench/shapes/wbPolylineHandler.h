#pragma once

#include <iModelStage/editing/iGeometryHandler.h>

// Handle editing of polylines: a handle on every vertex; moving a handle
// moves its vertex, deleting it removes the vertex, as long as two remain.
class wbPolylineHandler : public iGeometryHandler {
    I_CLASS(wbPolylineHandler, iGeometryHandler, 1)
    I_OSG_NODE(wbPolylineHandler)
public:
    static constexpr int MinimumVertices = 2;

    wbPolylineHandler() = default;
    wbPolylineHandler(wbPolylineHandler const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryHandler(other, copyop)
    {
    }

    bool getHandles(iGeometricGroup* object, osg::Vec3Array& positions) override;
    void setHandle(iGeometricGroup* object, int index, osg::Vec3f const& position) override;
    bool canDeleteHandle(iGeometricGroup* object, int index) override;
    void deleteHandle(iGeometricGroup* object, int index) override;

protected:
    ~wbPolylineHandler() override = default;
};
