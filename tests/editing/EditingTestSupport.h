#ifndef IMODELSTAGE_TESTS_EDITING_EDITING_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_EDITING_EDITING_TEST_SUPPORT_H

#include <iModelStage/editing/iBaseHandle.h>
#include <iModelStage/editing/iGeometryHandler.h>
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <algorithm>
#include <string>
#include <vector>

// An open polyline whose vertices persist, so that undo brings them back.
class iEditTestLine : public iGeometricGroup {
    I_CLASS(iEditTestLine, iGeometricGroup, 1)
    I_OSG_NODE(iEditTestLine)
public:
    iEditTestLine() : _points(new osg::Vec3Array) {}
    iEditTestLine(iEditTestLine const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop), _points(new osg::Vec3Array(*other._points))
    {
    }

    osg::Vec3Array* getVertices() override { return _points.get(); }
    void setVertices(osg::Vec3Array const& points) override { _points = new osg::Vec3Array(points); }

    void read(iInStream& stream, int)
    {
        _points = new osg::Vec3Array(std::clamp(stream.readInt(), 0, 4096));
        for (osg::Vec3f& p : *_points)
            for (int i = 0; i < 3; ++i)
                p[i] = float(stream.readDouble());
    }
    void write(iOutStream& stream)
    {
        stream.writeInt(int(_points->size()));
        for (osg::Vec3f const& p : *_points)
            for (int i = 0; i < 3; ++i)
                stream.writeDouble(p[i]);
    }

protected:
    ~iEditTestLine() override = default;

private:
    osg::ref_ptr<osg::Vec3Array> _points;
};

// Draws the polyline unlit in the group's colour.
class iEditTestLineRenderer : public iGeometryRenderer {
    I_CLASS(iEditTestLineRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(iEditTestLineRenderer)
public:
    iEditTestLineRenderer() = default;
    iEditTestLineRenderer(iEditTestLineRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        osg::Vec3Array* points = group->getVertices();
        if (!points || points->empty())
            return;
        osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
        line->setVertexArray(new osg::Vec3Array(*points));
        line->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
        line->addPrimitiveSet(new osg::DrawArrays(GL_LINE_STRIP, 0, GLsizei(points->size())));
        auto* geode = new osg::Geode;
        geode->addDrawable(line.get());
        geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        addChild(geode);
    }

protected:
    ~iEditTestLineRenderer() override = default;
};

// A handle on every vertex of an iEditTestLine; what it is asked is written
// to a log the test reads.
class iEditTestHandler : public iGeometryHandler {
    I_CLASS(iEditTestHandler, iGeometryHandler, 1)
public:
    std::string getEditingHandlerClass() override { return handleClass; }
    bool getHandles(iGeometricGroup* object, osg::Vec3Array& out) override
    {
        osg::Vec3Array* points = object->getVertices();
        if (!points)
            return false;
        out.assign(points->begin(), points->end());
        return true;
    }
    void setHandle(iGeometricGroup* object, int index, osg::Vec3f const& position) override
    {
        (*object->getVertices())[index] = position;
        log.push_back("set " + std::to_string(index));
    }
    bool canDeleteHandle(iGeometricGroup*, int index) override { return index != undeletable; }
    void deleteHandle(iGeometricGroup* object, int index) override
    {
        osg::Vec3Array* points = object->getVertices();
        points->erase(points->begin() + index);
        log.push_back("delete " + std::to_string(index));
    }
    void initHandle(iGeometricGroup*, iBaseHandle* handle) override
    {
        log.push_back("init " + std::to_string(handle->getIndex()));
    }

    static std::vector<std::string> log;
    static std::string handleClass;
    static int undeletable;

protected:
    ~iEditTestHandler() override = default;
};

// The static members and class rows, once per test program.
#define I_EDIT_TEST_CLASSES                                                                                           \
    std::vector<std::string> iEditTestHandler::log;                                                                   \
    std::string iEditTestHandler::handleClass = "iPointHandle";                                                       \
    int iEditTestHandler::undeletable = -1;                                                                           \
    I_REGISTER_PERSISTENT_CLASS(iEditTestLine)                                                                        \
    I_REGISTER_CLASS(iEditTestLineRenderer)                                                                           \
    I_REGISTER_CLASS(iEditTestHandler)

#endif
