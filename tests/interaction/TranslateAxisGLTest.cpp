#include "interaction/ToolsGLFixture.h"

#include <iModelStage/interaction/iTranslate1DIA.h>
#include <iModelStage/interaction/iTranslate2DIA.h>
#include <iModelStage/model/iTransformGroup.h>

namespace {

class TranslateAxis : public ToolsGLFixture {};

// Seen from the top, the camera line through the cursor comes closest to
// the x axis where it crosses z = 0: the delta follows the cursor there.
TEST_F(TranslateAxis, OneDimensionalMoveFollowsTheCameraLineNearTheAxis)
{
    osg::ref_ptr<iSnapTestGroup> object = square(-1.0f, -1.0f, 1.0f, 1.0f);
    layer->addObjectSelection(object.get());
    osg::Matrixd const start = object->getWorldMatrix();
    auto* tool = new iTranslate1DIA;
    ASSERT_TRUE(manager.pushInteractor(tool, false));
    drag(tool, {pixel({1.0f, 1.0f, 0.0f})});
    tool->move(pointAt(tool, pixel({4.0f, 3.0f, 0.0f})));
    EXPECT_NEAR(tool->getDelta().x(), 3.0f, 1e-3f);
    EXPECT_NEAR(tool->getDelta().y(), 2.0f, 1e-3f);
    EXPECT_NEAR(tool->getDelta().z(), 0.0f, 1e-3f);
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), start * osg::Matrixd::translate(tool->getDelta())));
    tool->click(pointAt(tool, pixel({4.0f, 3.0f, 0.0f})));
    tool->release(pointAt(tool, pixel({4.0f, 3.0f, 0.0f})));
    EXPECT_EQ(tool->getState(), iInteractor::iIAStateEnded);

    // The default plane x = 0 stands edge-on to a top view: no cut, no move.
    manager.loop();
    auto* planar = new iTranslate2DIA;
    ASSERT_TRUE(manager.pushInteractor(planar, false));
    osg::Matrixd const before = object->getWorldMatrix();
    drag(planar, {pixel({1.0f, 1.0f, 0.0f})});
    planar->move(pointAt(planar, pixel({4.0f, 3.0f, 0.0f})));
    EXPECT_EQ(planar->getDelta(), osg::Vec3f());
    EXPECT_TRUE(sameMatrix(object->getWorldMatrix(), before));
}

} // namespace
