#include "viewing/ViewerTestSupport.h"

#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iColor4iModelStage_viewerbgview.h>
#include <iModelStage/model/iNodeGroup.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingsManagerBase.h>
#include <iModelStage/viewing/iViewerButtonsLayout.h>

#include <osg/LightSource>
#include <osg/PositionAttitudeTransform>

#include <memory>

I_REGISTER_CLASS(iViewerTestGroup)
I_REGISTER_CLASS(iViewerTestRenderer)

namespace {

bool flag(osg::Node* node, unsigned int bit)
{
    return iNodeGroup::getNodeFlags(node).test(bit);
}

int lightNumber(osg::Node* node)
{
    auto* place = dynamic_cast<osg::PositionAttitudeTransform*>(node);
    if (!place || place->getNumChildren() != 1)
        return -1;
    auto* source = dynamic_cast<osg::LightSource*>(place->getChild(0));
    return source && source->getLight() ? source->getLight()->getLightNum() : -1;
}

iColor4iModelStage_viewerbgview* backgroundSetting()
{
    return dynamic_cast<iColor4iModelStage_viewerbgview*>(
        iSettingsManagerBase::getSettingsLayer()->findObjectByName("iModelStage_viewerbg"));
}

class ViewerGL : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(viewer.open(200, 150)) << "no GL surface: is DISPLAY set?"; }

    ProbeViewer viewer;
};

} // namespace

TEST_F(ViewerGL, SceneTreeHoldsLayersModelAndOneSetOfLights)
{
    osg::ref_ptr<iBaseModel> model = new iBaseModel;
    viewer.setViewModel(model.get());
    viewer.setViewModel(model.get());

    osg::Group* root = viewer.osgViewer::Viewer::getSceneData()->asGroup();
    ASSERT_TRUE(root);
    ASSERT_EQ(root->getNumChildren(), 7u);
    EXPECT_EQ(root->getChild(0), viewer.getViewLayer());
    EXPECT_EQ(root->getChild(1), viewer.getUILayer());
    EXPECT_EQ(root->getChild(2), model->getRoot());
    EXPECT_EQ(viewer.getSceneData(), model->getRoot());
    for (unsigned int i = 0; i < 4; ++i)
        EXPECT_EQ(lightNumber(root->getChild(3 + i)), int(i) + 1);
    EXPECT_EQ(dynamic_cast<osg::PositionAttitudeTransform*>(root->getChild(6))->getPosition(),
              osg::Vec3d(200, 0, 200));

    EXPECT_FALSE(flag(viewer.getViewLayer(), 1));
    ASSERT_EQ(viewer.getViewLayer()->getNumChildren(), 1u);
    osg::Group* globalAxisGroup = viewer.getViewLayer()->getChild(0)->asGroup();
    EXPECT_FALSE(flag(globalAxisGroup, 1));
    ASSERT_EQ(globalAxisGroup->getNumChildren(), 1u);
    EXPECT_EQ(globalAxisGroup->getChild(0), iViewer::globalaxis.get());

    ASSERT_EQ(viewer.getUILayer()->getNumChildren(), 1u);
    EXPECT_EQ(viewer.getUILayer()->getChild(0), viewer.getUICamera());
    osg::Camera* ui = viewer.getUICamera();
    EXPECT_EQ(ui->getRenderOrder(), osg::Camera::POST_RENDER);
    EXPECT_EQ(ui->getClearMask(), GLbitfield(GL_DEPTH_BUFFER_BIT));
    EXPECT_EQ(ui->getReferenceFrame(), osg::Transform::ABSOLUTE_RF);
    // The triad's group, then the six buttons.
    ASSERT_EQ(ui->getNumChildren(), 7u);
    osg::Group* screenAxisGroup = ui->getChild(0)->asGroup();
    EXPECT_FALSE(flag(screenAxisGroup, 1));
    ASSERT_EQ(screenAxisGroup->getNumChildren(), 1u);
    EXPECT_TRUE(dynamic_cast<iGeometricGroup*>(screenAxisGroup->getChild(0)));

    EXPECT_EQ(viewer.getCamera()->getDrawBuffer(), GLenum(GL_BACK));
    EXPECT_EQ(viewer.getThreadingModel(), osgViewer::ViewerBase::SingleThreaded);
    EXPECT_EQ(viewer.getCurrentViewLookup(), iView::iLookupTop);
    EXPECT_EQ(viewer.getViewerButtonsFlags(), 0xFFFFFFFFu);
    EXPECT_EQ(viewer.getButtonsLayout()->getButtons(iViewerButtonsLayout::iButtonsTopLeft).size(), 3u);
    EXPECT_EQ(viewer.getButtonsLayout()->getButtons(iViewerButtonsLayout::iButtonsTopRight).size(), 3u);
    EXPECT_STREQ(viewer.getClassName(), "iViewer");

    // A second init changes nothing.
    viewer.init();
    EXPECT_EQ(ui->getNumChildren(), 7u);
    EXPECT_EQ(viewer.getRendererMaskItems().size(), 1u);

    // No model: layers and lights stay, the old model is still the view's.
    viewer.setViewModel(nullptr);
    ASSERT_EQ(root->getNumChildren(), 6u);
    EXPECT_EQ(root->getChild(0), viewer.getViewLayer());
    EXPECT_EQ(lightNumber(root->getChild(2)), 1);
    EXPECT_EQ(viewer.getViewModel(), model.get());
    EXPECT_EQ(viewer.getSceneData(), nullptr);
}

TEST_F(ViewerGL, TwoViewersShareTheAxisObjectsButNotTheirCameras)
{
    ProbeViewer other;
    ASSERT_TRUE(other.open(120, 90));
    EXPECT_NE(other.getUICamera(), viewer.getUICamera());
    osg::Node* triad = viewer.getUICamera()->getChild(0)->asGroup()->getChild(0);
    EXPECT_EQ(other.getUICamera()->getChild(0)->asGroup()->getChild(0), triad);
    EXPECT_EQ(other.getViewLayer()->getChild(0)->asGroup()->getChild(0), iViewer::globalaxis.get());
    EXPECT_EQ(iViewerManager::getInstance()->getViewers().size(), 2);

    // Each draws the triad turned to its own camera.
    other.setLookupSwitchAnimate(false);
    other.setViewLookup(iView::iLookupFront);
    ASSERT_TRUE(other.paintFrame());
    osg::Quat const frontAttitude = static_cast<osg::PositionAttitudeTransform*>(triad)->getAttitude();
    ASSERT_TRUE(viewer.paintFrame());
    osg::Quat const topAttitude = static_cast<osg::PositionAttitudeTransform*>(triad)->getAttitude();
    EXPECT_GT((frontAttitude.asVec4() - topAttitude.asVec4()).length(), 0.1);
}

TEST_F(ViewerGL, BackgroundFollowsTheSettingInVisibleAndHiddenViewers)
{
    // Away from the axis cross through the centre and the triad in the
    // corner.
    int const x = 150, y = 50;
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(x, y), 62, 74, 98)) << viewer.pixel(x, y).name().toStdString();

    auto hidden = std::make_unique<ProbeViewer>();
    ASSERT_TRUE(hidden->open(80, 60));
    hidden->hide();

    iColor4iModelStage_viewerbgview* setting = backgroundSetting();
    ASSERT_TRUE(setting);
    setting->set_iModelStage_viewerbg(osg::Vec4f(1.0f, 0.5f, 0.0f, 1.0f));
    iViewerManager::getInstance()->applySettingsChanges();
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(x, y), 255, 128, 0)) << viewer.pixel(x, y).name().toStdString();
    hidden->show();
    ASSERT_TRUE(hidden->paintFrame());
    EXPECT_TRUE(sameColor(hidden->pixel(60, 15), 255, 128, 0)) << hidden->pixel(60, 15).name().toStdString();

    // Restoring the defaults reaches the viewers by itself.
    iSettingsManagerBase::restoreDefaultValues();
    ASSERT_TRUE(viewer.paintFrame());
    EXPECT_TRUE(sameColor(viewer.pixel(x, y), 62, 74, 98));
}

TEST_F(ViewerGL, RendererDrawsItsObjectAtItsProjectedPixel)
{
    osg::ref_ptr<iViewerTestGroup> square = makeRedSquare();
    osg::ref_ptr<iBaseModel> model = new iBaseModel;
    model->addObject(square.get(), true);
    viewer.setViewModel(model.get());
    viewer.setLookupSwitchAnimate(false);
    viewer.setViewLookup(iView::iLookupTop);
    ASSERT_TRUE(viewer.paintFrame());
    viewer.frame.save(QString::fromStdString(testing::TempDir() + "viewer_red_square.png"));

    // The square spans 4 of the 16 units across the view's height.
    osg::Vec3d const centre = viewer.project(osg::Vec3d(0, 0, 0));
    osg::Vec3d const corner = viewer.project(osg::Vec3d(1.9, 1.9, 0));
    EXPECT_NEAR(centre.x(), 100.0, 1.0);
    EXPECT_NEAR(centre.y(), 75.0, 1.0);
    EXPECT_TRUE(sameColor(viewer.pixel(int(centre.x()), int(centre.y())), 255, 0, 0));
    EXPECT_TRUE(sameColor(viewer.pixel(int(corner.x()), int(corner.y())), 255, 0, 0));
    osg::Vec3d const outside = viewer.project(osg::Vec3d(2.5, 1, 0));
    EXPECT_TRUE(sameColor(viewer.pixel(int(outside.x()), int(outside.y())), 62, 74, 98));
}

TEST_F(ViewerGL, ZeroSizeOnlyReachesTheEventQueue)
{
    osg::Matrixd const projection = viewer.getCurrentView().getState().getProjectionMatrix();
    viewer.resizeGL(0, 150);
    EXPECT_EQ(viewer.getUICamera()->getViewport()->width(), 200);
    EXPECT_EQ(viewer.getCurrentView().getState().getProjectionMatrix(), projection);
    EXPECT_EQ(viewer.getGraphicsWindow()->getEventQueue()->getCurrentEventState()->getWindowWidth(), 0);

    viewer.resizeGL(300, 100);
    EXPECT_EQ(viewer.getCamera()->getViewport()->width(), 300);
    EXPECT_EQ(viewer.getUICamera()->getViewport()->height(), 100);
}

TEST_F(ViewerGL, PaintViewersSkipsHiddenViewers)
{
    ProbeViewer other;
    ASSERT_TRUE(other.open(80, 60));
    ASSERT_TRUE(processUntil([&] { return other.paints > 0 && viewer.paints > 0; }));
    QCoreApplication::processEvents();
    other.hide();
    int const hiddenBefore = other.paints;
    int const shownBefore = viewer.paints;
    iViewerManager::getInstance()->paintViewers();
    ASSERT_TRUE(processUntil([&] { return viewer.paints > shownBefore; }));
    QCoreApplication::processEvents();
    EXPECT_EQ(other.paints, hiddenBefore);
}

TEST_F(ViewerGL, DestroyedViewersLeaveTheManagerAndNewOnesStillDraw)
{
    int const before = iViewerManager::getInstance()->getViewers().size();
    {
        ProbeViewer gone;
        ASSERT_TRUE(gone.open(64, 64));
        ASSERT_TRUE(gone.paintFrame());
        EXPECT_EQ(iViewerManager::getInstance()->getViewers().size(), before + 1);
    }
    EXPECT_EQ(iViewerManager::getInstance()->getViewers().size(), before);
    EXPECT_FALSE(iViewerManager::getInstance()->getViewers().contains(nullptr));

    ProbeViewer next;
    ASSERT_TRUE(next.open(64, 64));
    ASSERT_TRUE(next.paintFrame());
    EXPECT_TRUE(sameColor(next.pixel(50, 12), 62, 74, 98));
}

TEST_F(ViewerGL, ButtonsShowOnEnterExceptInPerspective)
{
    auto const& row = viewer.getButtonsLayout()->getButtons(iViewerButtonsLayout::iButtonsTopLeft);
    viewer.mouseLeaveEvent();
    EXPECT_EQ(row[0]->getNodeMask(), 0u);
    viewer.mouseEnterEvent();
    EXPECT_EQ(row[0]->getNodeMask(), 0xFFFFFFu);
    viewer.setLookupSwitchAnimate(false);
    viewer.setViewLookup(iView::iLookupFree);
    viewer.mouseEnterEvent();
    EXPECT_EQ(row[0]->getNodeMask(), 0u);
    viewer.setViewLookup(iView::iLookupTop);
    viewer.setViewerButtonsFlags(0);
    viewer.mouseEnterEvent();
    EXPECT_EQ(row[0]->getNodeMask(), 0u);
}
