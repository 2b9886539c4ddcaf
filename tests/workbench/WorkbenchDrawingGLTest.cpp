#include "WorkbenchGLSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/dimensioning/iLinearQuote.h>

#include <map>

namespace {

// Drawing with the workbench's own tools, from the tool bar and clicks in
// the plan, down to a saved document that reopens the same.
class WorkbenchDrawing : public WorkbenchWindowTest {
protected:
    void SetUp() override
    {
        WorkbenchWindowTest::SetUp();
        if (!iRoot::findClass("wbCreateBoxIA"))
            GTEST_SKIP() << "the workbench's shapes are not in this build";
    }
    template <class T>
    std::vector<T*> all()
    {
        std::vector<T*> out;
        osg::Group* root = layer()->getObjectsRoot();
        for (unsigned int i = 0; i < root->getNumChildren(); ++i)
            if (auto* object = dynamic_cast<T*>(root->getChild(i)))
                out.push_back(object);
        return out;
    }
    void clicks(std::initializer_list<osg::Vec3f> points)
    {
        for (osg::Vec3f const& p : points)
            click(at(p));
        frames(2);
    }
};

TEST_F(WorkbenchDrawing, BoxesPolylineAndDimensionDrawnByClicksSurviveSaveAndReopen)
{
    ASSERT_TRUE(press("tool.box"));
    clicks({{-6, -2, 0}, {-3, 1, 0}, {-3, 2, 0}});
    ASSERT_TRUE(press("tool.box"));
    clicks({{2, -2, 0}, {5, 1, 0}, {5, 3, 0}});
    ASSERT_EQ(all<wbBox>().size(), 2u);

    ASSERT_TRUE(press("tool.polyline"));
    clicks({{-6, 4, 0}, {0, 5, 0}, {6, 4, 0}});
    key(Qt::Key_Return);
    frames(2);
    ASSERT_EQ(all<wbPolyline>().size(), 1u);
    EXPECT_EQ(all<wbPolyline>().front()->getNumVertices(), 3);

    // Between two corners, found by the snaps near the cursor.
    ASSERT_TRUE(press("tool.linearDimension"));
    clicks({{-3.05f, -2.05f, 0}, {2.05f, -1.95f, 0}, {0, -3, 0}});
    ASSERT_EQ(all<iLinearQuote>().size(), 1u);

    QString const file = dir.filePath("drawn.ims");
    ASSERT_TRUE(window->fileMenu()->saveAs(file));
    std::map<std::string, osg::Matrixd> drawn;
    std::vector<std::string> classes;
    osg::Group* root = layer()->getObjectsRoot();
    for (unsigned int i = 0; i < root->getNumChildren(); ++i)
        if (auto* object = dynamic_cast<iTransformGroup*>(root->getChild(i))) {
            classes.push_back(object->getClassName());
            drawn[object->get_name()] = object->getMatrix();
        }
    closeWindow();
    openWindow();
    ASSERT_TRUE(window->fileMenu()->openFile(file));
    std::vector<std::string> reopened;
    root = layer()->getObjectsRoot();
    for (unsigned int i = 0; i < root->getNumChildren(); ++i)
        if (auto* object = dynamic_cast<iTransformGroup*>(root->getChild(i))) {
            reopened.push_back(object->getClassName());
            ASSERT_EQ(drawn.count(object->get_name()), 1u) << object->get_name();
            for (int r = 0; r < 4; ++r)
                for (int c = 0; c < 4; ++c)
                    EXPECT_NEAR(object->getMatrix()(r, c), drawn[object->get_name()](r, c), 1e-5) << object->get_name();
        }
    EXPECT_EQ(reopened, classes);
    EXPECT_EQ(all<wbPolyline>().front()->getNumVertices(), 3);
}

} // namespace
