#include "workbench/ShapeTestSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbPolyline.h"
#include "shapes/wbPolylineHandler.h"

#include <iModelStage/editing/iGeometryHandlerManager.h>

TEST(ShapePolylineHandler, HandlesAreTheVerticesAndTwoAlwaysRemain)
{
    wbRegisterClasses();
    std::vector<std::string> handlers;
    ASSERT_TRUE(iGeometryHandlerManager::getHandlerClasses("wbPolyline", handlers));
    EXPECT_EQ(handlers, std::vector<std::string>{"wbPolylineHandler"});

    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    for (osg::Vec3f const& v : {osg::Vec3f(0, 0, 0), osg::Vec3f(1, 0, 0), osg::Vec3f(1, 1, 0)})
        polyline->addVertex(v);
    osg::ref_ptr<wbPolylineHandler> handler = new wbPolylineHandler;
    osg::ref_ptr<osg::Vec3Array> handles = new osg::Vec3Array;
    ASSERT_TRUE(handler->getHandles(polyline.get(), *handles));
    EXPECT_EQ(*handles, *polyline->getVertices());

    handler->setHandle(polyline.get(), 1, osg::Vec3f(2, -1, 3));
    EXPECT_EQ((*polyline->getVertices())[1], osg::Vec3f(2, -1, 3));
    handler->setHandle(polyline.get(), 7, osg::Vec3f(9, 9, 9));
    EXPECT_EQ(polyline->getNumVertices(), 3);

    EXPECT_TRUE(handler->canDeleteHandle(polyline.get(), 0));
    handler->deleteHandle(polyline.get(), 0);
    ASSERT_EQ(polyline->getNumVertices(), 2);
    EXPECT_EQ((*polyline->getVertices())[0], osg::Vec3f(2, -1, 3));
    EXPECT_FALSE(handler->canDeleteHandle(polyline.get(), 0));
    handler->deleteHandle(polyline.get(), 0);
    EXPECT_EQ(polyline->getNumVertices(), 2);

    // Other objects are not its business.
    osg::ref_ptr<wbBox> box = new wbBox;
    EXPECT_FALSE(handler->getHandles(box.get(), *handles));
    EXPECT_FALSE(handler->getHandles(new wbPolyline, *handles));
}
