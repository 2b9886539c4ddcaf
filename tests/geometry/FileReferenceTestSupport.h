#ifndef IMODELSTAGE_TESTS_GEOMETRY_FILE_REFERENCE_TEST_SUPPORT_H
#define IMODELSTAGE_TESTS_GEOMETRY_FILE_REFERENCE_TEST_SUPPORT_H

#include "geometry/GeometryTestSupport.h"
#include "model/ModelTestSupport.h"

#include <iModelStage/geometry/iFileReferenceGroup.h>
#include <iModelStage/geometry/iImportExportCallBack.h>
#include <iModelStage/geometry/iImportExportManager.h>

#include <osg/Geode>
#include <osg/Geometry>
#include <osgDB/WriteFile>

// A model of two points, (1, 1, 1) and (2, 3, 4), joined by a line.
inline osg::ref_ptr<osg::Node> twoPointModel()
{
    osg::ref_ptr<osg::Vec3Array> points = new osg::Vec3Array;
    points->push_back(osg::Vec3f(1, 1, 1));
    points->push_back(osg::Vec3f(2, 3, 4));
    osg::ref_ptr<osg::Geometry> line = new osg::Geometry;
    line->setVertexArray(points.get());
    line->addPrimitiveSet(new osg::DrawArrays(GL_LINES, 0, 2));
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(line.get());
    return geode;
}

// Writes the model with osgDB into a file of the test's own.
inline std::string writeTwoPointModel(TempFiles& files, std::string const& name)
{
    std::string const path = files.path(name);
    EXPECT_TRUE(osgDB::writeNodeFile(*twoPointModel(), path));
    return path;
}

// Answers for names ending in ".tgeo" with a geometric group named after
// the file, and counts its live instances.
class iTestGeometricImporter : public iImportExportCallBack {
    I_CLASS(iTestGeometricImporter, iImportExportCallBack, 1)
public:
    iTestGeometricImporter() { ++alive; }
    ~iTestGeometricImporter() override { --alive; }

    static bool handles(std::string const& name)
    {
        return name.size() > 5 && name.compare(name.size() - 5, 5, ".tgeo") == 0;
    }
    std::vector<std::string> getHandledFileExtesions() override { return {"Test geometry (*.tgeo)"}; }
    osg::Node* importFromFile(std::string const& name) override
    {
        if (!handles(name))
            return nullptr;
        aliveAtImport = alive;
        iGeometricGroup* group = new iGeometricGroup;
        group->set_name(name);
        return group;
    }
    bool exportToFile(osg::Node* node, std::string const& name) override
    {
        exported = node && handles(name) ? name : std::string();
        return !exported.empty();
    }

    static int alive;
    static int aliveAtImport;
    static std::string exported;
};

#endif
