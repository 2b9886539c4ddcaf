#include "snapping/SnapViewerFixture.h"

#include <iModelStage/snapping/iSnapHitVisitor.h>

namespace {

// A document wide enough that the hit pass looks its objects up in an
// index instead of walking them: a lattice of short segments, 20 x 20,
// a quarter unit apart, below the area the tests snap in.
class SnapLargeDocumentGL : public SnapViewerFixture {
protected:
    void SetUp() override
    {
        SnapViewerFixture::SetUp();
        for (int i = 0; i < 400; ++i) {
            float const x = -5.0f + 0.25f * float(i % 20), y = -6.0f + 0.25f * float(i / 20);
            addSnapTestGroup(layer.get(), {{x, y, 0.0f}, {x + 0.1f, y, 0.0f}});
        }
        ASSERT_GE(layer->getObjectsRoot()->getNumChildren(), iSnapHitVisitor::wideGroup);
    }
};

} // namespace

TEST_F(SnapLargeDocumentGL, HitPassFollowsAddsMovesAndRemovals)
{
    osg::Vec3f const there(4.0f, 3.0f, 0.0f);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(osg::Vec3f(-4.0f, -5.0f, 0.0f))), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(-4.0f, -5.0f, 0.0f));
    // The object root now has its bound watched for the index.
    EXPECT_NE(layer->getObjectsRoot()->getComputeBoundingSphereCallback(), nullptr);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(there, 3.0f, 0.0f)), "");

    osg::ref_ptr<iSnapTestGroup> added = addSnapTestGroup(layer.get(), {{0.0f, 0.0f, 0.0f}, {1.0f, 0.0f, 0.0f}});
    added->setPosition(there);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(there, 3.0f, 0.0f)), "iPointSnap");
    EXPECT_EQ(point, there);

    // Moved away, it is found only where it went.
    osg::Vec3f const moved(-2.0f, 5.0f, 0.0f);
    added->setPosition(moved);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(there, 3.0f, 0.0f)), "");
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(moved, 3.0f, -2.0f)), "iPointSnap");
    EXPECT_EQ(point, moved);

    // Its geometry rebuilt longer, the new far end is found.
    added->points = {{0.0f, 0.0f, 0.0f}, {3.0f, 0.0f, 0.0f}};
    added->updateGeometry(true);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(osg::Vec3f(1.0f, 5.0f, 0.0f), 0.0f, 4.0f)), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(1.0f, 5.0f, 0.0f));

    layer->removeObject(added.get(), true);
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(moved, 3.0f, -2.0f)), "");

    // Dropping the indexes changes no answer.
    iSnapHitVisitor::clearIndexes();
    EXPECT_EQ(snapWith({"iPointSnap"}, cursorAt(osg::Vec3f(-4.0f, -5.0f, 0.0f))), "iPointSnap");
    EXPECT_EQ(point, osg::Vec3f(-4.0f, -5.0f, 0.0f));
}
