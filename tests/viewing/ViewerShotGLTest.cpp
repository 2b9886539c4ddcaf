#include "viewing/ViewerTestSupport.h"

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/viewing/iViewerShotIA.h>

#include <QDir>
#include <QTemporaryDir>

#include <memory>

namespace {

iIAPoint windowPoint(float x, float y)
{
    return iIAPoint(osg::Vec3f(), osg::Vec3f(x, y, 0.0f), osg::Vec3f(), osg::Vec3f());
}

class ViewerShot : public testing::Test {
protected:
    void SetUp() override
    {
        document = std::make_unique<iLayersManager>();
        document->freeLayerObjects();
        images = iLayersManager::registerNodeLayerClass("iImagesLayer", "iImagesLayer");
        ASSERT_NE(images, nullptr);
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(viewer.open(200, 150));
        tool.setViewer(&viewer);
        tool.set_destpath(dir.path().toStdString());
        tool.set_imgname("shot");
    }
    void TearDown() override
    {
        document->freeLayerObjects();
        document.reset();
    }
    void drag(float x0, float y0, float x1, float y1)
    {
        tool.click(windowPoint(x0, y0));
        tool.move(windowPoint(x1, y1));
        tool.release(windowPoint(x1, y1));
    }
    unsigned int imageObjects() const { return images->getObjectsRoot()->getNumChildren(); }

    std::unique_ptr<iLayersManager> document;
    iNodeLayer* images = nullptr;
    QTemporaryDir dir;
    ProbeViewer viewer;
    iViewerShotIA tool;
};

} // namespace

TEST_F(ViewerShot, TheDraggedAreaIsSavedFromTheViewersOwnPicture)
{
    viewer.getCamera()->setClearColor(osg::Vec4(0, 0, 1, 1));
    tool.set_color(iColor4(1.0f, 0.0f, 0.0f, 1.0f));
    tool.start();
    EXPECT_FALSE(viewer.isGlobalAxisVisible());
    EXPECT_EQ(viewer.getCamera()->getClearColor(), osg::Vec4(1, 0, 0, 1));
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_EQ(viewer.pixel(190, 100), QColor(255, 0, 0));

    // Dragged up and left: the same area as down and right.
    drag(195, 35, 140, 5);
    EXPECT_EQ(tool.get_left(), 140);
    EXPECT_EQ(tool.get_top(), 115);
    EXPECT_EQ(tool.get_right(), 195);
    EXPECT_EQ(tool.get_bottom(), 145);
    EXPECT_EQ(tool.getCurrentStep(), 0);

    // Switching the plain background off and on takes effect at once.
    tool.set_sfondo(false);
    EXPECT_EQ(viewer.getCamera()->getClearColor(), osg::Vec4(0, 0, 1, 1));
    EXPECT_TRUE(viewer.isGlobalAxisVisible());
    tool.set_sfondo(true);
    EXPECT_EQ(viewer.getCamera()->getClearColor(), osg::Vec4(1, 0, 0, 1));

    // The viewer gets its own look back before the picture is taken.
    testing::internal::CaptureStdout();
    tool.close();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Capture: size=200x150, format=GL_RGB\n");
    EXPECT_EQ(tool.getState(), iInteractor::iIAStateClosed);
    EXPECT_EQ(viewer.getCamera()->getClearColor(), osg::Vec4(0, 0, 1, 1));

    QImage const shot(dir.filePath("shot.png"));
    ASSERT_FALSE(shot.isNull());
    EXPECT_EQ(shot.size(), QSize(55, 30));
    for (QPoint const at : {QPoint(0, 0), QPoint(54, 29)}) {
        QColor const colour = shot.pixelColor(at);
        EXPECT_GT(colour.blue(), 2 * colour.red()) << at.x() << "," << at.y();
        EXPECT_GT(colour.blue(), 2 * colour.green()) << at.x() << "," << at.y();
    }
    ASSERT_EQ(imageObjects(), 1u);
    EXPECT_EQ(images->getObjectsRoot()->getChild(0)->getName(), "shot");

    // The viewer still draws as before.
    ASSERT_TRUE(viewer.paintFrame());
    QColor const after = viewer.pixel(190, 20);
    EXPECT_GT(after.blue(), 2 * after.red());
}

TEST_F(ViewerShot, DefaultNamesCountAndAnEmptyNameSavesNothing)
{
    iViewerShotIA first;
    iViewerShotIA second;
    QString const a = QString::fromStdString(first.get_imgname());
    QString const b = QString::fromStdString(second.get_imgname());
    EXPECT_TRUE(a.startsWith("Immagine_"));
    EXPECT_EQ(a.section('_', 1, 1).toInt() + 1, b.section('_', 1, 1).toInt());
    EXPECT_EQ(first.get_suffix(), ".png");
    EXPECT_EQ(first.get_destpath(), QDir::homePath().toStdString());
    EXPECT_TRUE(first.get_sfondo());

    tool.set_imgname("");
    tool.start();
    drag(10, 10, 50, 40);
    tool.close();
    EXPECT_EQ(imageObjects(), 0u);
    EXPECT_TRUE(QDir(dir.path()).entryList(QDir::Files).isEmpty());
    EXPECT_TRUE(viewer.isGlobalAxisVisible());
}
