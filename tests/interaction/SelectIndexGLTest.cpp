#include "interaction/ToolsGLFixture.h"

#include <iModelStage/interaction/iComputeSelBoundsVisitor.h>
#include <iModelStage/interaction/iHitGeometries.h>
#include <iModelStage/interaction/iSelectWindowIA.h>
#include <iModelStage/snapping/iSnapChildIndex.h>

#include <osgUtil/IntersectionVisitor>
#include <osgUtil/PolytopeIntersector>

#include <algorithm>
#include <map>
#include <random>
#include <set>

namespace {

using Objects = std::vector<osg::Node*>;

// Documents wide enough that picks and windows go through the object
// root's index, checked against a plain walk of every object.
class SelectIndexGL : public ToolsGLFixture {
protected:
    void SetUp() override
    {
        ToolsGLFixture::SetUp();
        iSnapChildIndex::dropAll();
    }

    // Square of side size centred on (x, y) at height z.
    osg::ref_ptr<iSnapTestGroup> squareAt(float x, float y, float size, float z = 0.0f)
    {
        float const h = size * 0.5f;
        return square(x - h, y - h, x + h, y + h, z);
    }

    // Squares spread over the view and somewhat beyond it, some turned,
    // scaled, raised or lowered; a few hidden, a few not selectable.
    void randomScene(int count, unsigned int seed)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> place(-10.0f, 10.0f), size(0.05f, 1.5f), height(-3.0f, 3.0f);
        std::uniform_real_distribution<float> angle(0.0f, 6.28f), scale(0.5f, 2.0f), unit(0.0f, 1.0f);
        for (int i = 0; i < count; ++i) {
            osg::ref_ptr<iSnapTestGroup> group = squareAt(0.0f, 0.0f, size(random), height(random));
            group->setPosition(osg::Vec3d(place(random), place(random), 0.0));
            if (unit(random) < 0.3f)
                group->setAttitude(osg::Quat(angle(random), osg::Vec3d(0.0, 0.0, 1.0)));
            if (unit(random) < 0.3f)
                group->setScale(osg::Vec3d(scale(random), scale(random), 1.0));
            float const odd = unit(random);
            if (odd < 0.08f)
                layer->setNodeFlag(group.get(), 0, false);
            else if (odd < 0.16f)
                layer->setNodeFlag(group.get(), 1, false);
        }
        ASSERT_GE(layer->getObjectsRoot()->getNumChildren(), iSnapChildIndex::wideGroup);
    }

    // A camera in the middle of the scene, looking along it: the objects
    // behind the eye come mirrored into the window by the perspective
    // division, and a window can hold them.
    void lookInPerspective()
    {
        osg::Camera* camera = viewer.getCamera();
        camera->setProjectionMatrixAsPerspective(60.0, 1.0, 0.1, 100.0);
        camera->setViewMatrixAsLookAt(osg::Vec3d(0.5, 0.3, 0.5), osg::Vec3d(0.5, 10.0, 0.2), osg::Vec3d(0, 0, 1));
    }

    Objects selection()
    {
        NodeList list;
        layer->getSelectionList(list, nullptr);
        return Objects(list.begin(), list.end());
    }

    // The window tool dragged from one pixel to another, as the pick tool
    // hands a drag over to it.
    Objects dragWindow(osg::Vec2f const& from, osg::Vec2f const& to)
    {
        auto* tool = new iSelectWindowIA;
        tool->setKeyModifiers(0);
        EXPECT_TRUE(manager.pushInteractor(tool, false));
        tool->start();
        tool->click(pointAt(tool, from));
        tool->move(pointAt(tool, to));
        tool->release(pointAt(tool, to));
        manager.loop();
        return selection();
    }

    osg::Matrixd windowMatrix()
    {
        osg::Camera* camera = viewer.getCamera();
        return camera->getViewMatrix() * camera->getProjectionMatrix() *
               camera->getViewport()->computeWindowMatrix();
    }

    // Every object tested, in the model's order: bounds through each path
    // to the window, wholly inside the rectangle, selectable, filtered in
    // and visible.
    Objects plainInside(osg::Vec2f const& low, osg::Vec2f const& high)
    {
        NodeList objects;
        layer->getObjectsList(layer->getRoot(), objects, nullptr);
        Objects out;
        for (osg::ref_ptr<osg::Node> const& object : objects) {
            iComputeSelBoundsVisitor bounds(&viewer);
            object->accept(bounds);
            osg::BoundingBox const box = bounds.getBoundingBox();
            if (!box.valid() || !layer->isNodeFlagSet(object.get(), 1) || !layer->isObjectFiltered(object.get()) ||
                !layer->isNodeFlagSet(object.get(), 0))
                continue;
            for (osg::NodePath path : object->getParentalNodePaths()) {
                path.pop_back();
                osg::Matrixd const toWindow = osg::computeLocalToWorld(path) * windowMatrix();
                osg::Vec3d const a = osg::Vec3d(box._min) * toWindow, b = osg::Vec3d(box._max) * toWindow;
                if (std::min(a.x(), b.x()) >= low.x() && std::max(a.x(), b.x()) <= high.x() &&
                    std::min(a.y(), b.y()) >= low.y() && std::max(a.y(), b.y()) <= high.y()) {
                    out.push_back(object.get());
                    break;
                }
            }
        }
        return out;
    }

    // The document objects a plain intersection visitor meets over the
    // rectangle, in hit order, each once.
    Objects plainHits(double x0, double y0, double x1, double y1)
    {
        osg::ref_ptr<osgUtil::PolytopeIntersector> picker =
            new osgUtil::PolytopeIntersector(osgUtil::Intersector::WINDOW, x0, y0, x1, y1);
        osgUtil::IntersectionVisitor visitor(picker.get());
        viewer.getCamera()->accept(visitor);
        Objects out;
        for (auto const& pair : iSelectablePairs(picker->getIntersections(), layer.get(), &viewer))
            if (std::find(out.begin(), out.end(), pair.first) == out.end())
                out.push_back(pair.first);
        return out;
    }

    // What a crossing window selects: the selectable, filtered-in objects
    // it touches, in the order of their addresses.
    Objects plainCrossing(osg::Vec2f const& low, osg::Vec2f const& high)
    {
        std::set<osg::Node*> touched;
        for (osg::Node* object : plainHits(low.x(), low.y(), high.x(), high.y()))
            if (layer->isNodeFlagSet(object, 1) && layer->isObjectFiltered(object))
                touched.insert(object);
        return Objects(touched.begin(), touched.end());
    }

    // Random windows both ways and random picks, each compared with the
    // plain walk; returns how many windows and picks found something.
    int compareWithPlainWalk(unsigned int seed, int windows, int picks)
    {
        std::mt19937 random(seed);
        std::uniform_real_distribution<float> pixel(-20.0f, 220.0f);
        int found = 0;
        for (int i = 0; i < windows; ++i) {
            osg::Vec2f const from(pixel(random), pixel(random)), to(pixel(random), pixel(random));
            osg::Vec2f const low(std::min(from.x(), to.x()), std::min(from.y(), to.y()));
            osg::Vec2f const high(std::max(from.x(), to.x()), std::max(from.y(), to.y()));
            Objects const expected = to.x() < from.x() ? plainCrossing(low, high) : plainInside(low, high);
            EXPECT_EQ(dragWindow(from, to), expected) << "window " << i << " from " << from.x() << "," << from.y()
                                                      << " to " << to.x() << "," << to.y();
            found += expected.empty() ? 0 : 1;
        }
        for (int i = 0; i < picks; ++i) {
            int const x = int(pixel(random)), y = int(pixel(random));
            std::vector<osg::ref_ptr<osg::Node>> hits;
            iHitGeometries(layer.get(), &viewer, x, y, hits);
            Objects const expected = plainHits(x - 5.0, y - 5.0, x + 5.0, y + 5.0);
            EXPECT_EQ(Objects(hits.begin(), hits.end()), expected) << "pick " << i << " at " << x << "," << y;
            found += expected.empty() ? 0 : 1;
        }
        return found;
    }
};

TEST_F(SelectIndexGL, WindowsAndPicksFindWhatThePlainWalkFinds)
{
    randomScene(500, 7u);
    EXPECT_GT(compareWithPlainWalk(11u, 80, 150), 150);
    // Seen in perspective from inside the scene, what lies behind the eye
    // can project into the window too.
    lookInPerspective();
    EXPECT_GT(compareWithPlainWalk(13u, 80, 150), 100);
}

TEST_F(SelectIndexGL, EditsAfterTheIndexWasBuiltAreSeen)
{
    std::vector<osg::ref_ptr<iSnapTestGroup>> grid;
    for (int i = 0; i < 300; ++i)
        grid.push_back(squareAt(-7.0f + 0.7f * float(i % 20), -5.0f + 0.7f * float(i / 20), 0.4f));
    // The lower half of the grid and the space below it, dragged rightwards.
    osg::Vec2f const low = pixel({-7.8f, -6.5f, 0.0f}), high = pixel({7.8f, -0.2f, 0.0f});
    ASSERT_EQ(dragWindow(low, high).size(), 140u);
    iSnapTestGroup* moved = grid[299].get();
    osg::Vec3f const old(6.3f, 4.8f, 0.0f), there(0.35f, -5.9f, 0.0f);
    auto pickAt = [&](osg::Vec3f const& world) {
        osg::Vec2f const at = pixel(world);
        std::vector<osg::ref_ptr<osg::Node>> hits;
        iHitGeometries(layer.get(), &viewer, int(at.x()), int(at.y()), hits);
        return Objects(hits.begin(), hits.end());
    };
    ASSERT_EQ(pickAt(old), Objects{moved});

    // Moved from the upper half to below the lower, a group is found where
    // it went and no more where it was. Also: a group added in the lower
    // part, one whose points now lie in the upper half, one removed, one
    // hidden, one no more selectable.
    moved->setPosition(osg::Vec3d(there - old));
    osg::ref_ptr<iSnapTestGroup> added = squareAt(7.5f, -5.5f, 0.2f);
    iSnapTestGroup* reshaped = grid[0].get();
    reshaped->points = {{-7.2f, 5.4f, 0.0f}, {-6.8f, 5.4f, 0.0f}, {-6.8f, 5.8f, 0.0f}, {-7.2f, 5.8f, 0.0f}};
    reshaped->updateGeometry(true);
    osg::ref_ptr<iSnapTestGroup> removed = grid[1];
    layer->removeObject(removed.get(), true);
    iSnapTestGroup* hidden = grid[2].get();
    iSnapTestGroup* fixed = grid[3].get();
    layer->setNodeFlag(hidden, 0, false);
    layer->setNodeFlag(fixed, 1, false);

    Objects const inside = dragWindow(low, high);
    EXPECT_EQ(inside, plainInside(low, high));
    EXPECT_EQ(inside.size(), 140u - 4u + 2u);
    auto holds = [](Objects const& list, osg::Node* node) {
        return std::find(list.begin(), list.end(), node) != list.end();
    };
    EXPECT_TRUE(holds(inside, moved) && holds(inside, added.get()));
    for (osg::Node* out : Objects{reshaped, removed.get(), hidden, fixed})
        EXPECT_FALSE(holds(inside, out));

    Objects const crossing = dragWindow(high, low);
    EXPECT_EQ(crossing, plainCrossing(low, high));
    // The crossing window also touches the row above the lower half.
    EXPECT_EQ(crossing.size(), 140u - 4u + 2u + 20u);
    EXPECT_TRUE(holds(crossing, moved) && holds(crossing, added.get()));

    EXPECT_EQ(pickAt(there), Objects{moved});
    EXPECT_TRUE(pickAt(old).empty());
    EXPECT_EQ(pickAt({7.5f, -5.5f, 0.0f}), Objects{added.get()});
    EXPECT_EQ(pickAt({-7.0f, 5.6f, 0.0f}), Objects{reshaped});
    EXPECT_TRUE(pickAt({-6.3f, -5.0f, 0.0f}).empty());
    EXPECT_TRUE(pickAt({-5.6f, -5.0f, 0.0f}).empty());
    EXPECT_EQ(pickAt({-4.9f, -5.0f, 0.0f}), Objects{fixed});
    EXPECT_GT(compareWithPlainWalk(17u, 40, 80), 40);

    // A class filtered out leaves nothing to select either way.
    layer->setSelectionFilter({"iGeometricGroup"});
    layer->setSelectionFilterActive(true);
    EXPECT_TRUE(dragWindow(low, high).empty());
    EXPECT_TRUE(dragWindow(high, low).empty());
}

} // namespace
