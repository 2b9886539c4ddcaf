#include "workbench/ShapeTestSupport.h"

#include "frame/FrameTestSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbCylinder.h"
#include "shapes/wbLabel.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iRoot.h>

#include <cmath>
#include <limits>

namespace {

void expectSameMatrix(osg::Matrixd const& a, osg::Matrixd const& b)
{
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            EXPECT_NEAR(a(r, c), b(r, c), 1e-9) << "at " << r << "," << c;
}

template <class T>
T* reloaded(iLayersManager* document, T* before)
{
    auto* after = dynamic_cast<T*>(document->findObjectByUniqueId(before->getUniqueId()));
    EXPECT_NE(after, nullptr) << before->getClassName();
    EXPECT_NE(after, before);
    if (after) {
        expectSameMatrix(after->getMatrix(), before->getMatrix());
        EXPECT_EQ(after->get_clr(), before->get_clr());
        EXPECT_EQ(after->get_name(), before->get_name());
    }
    return after;
}

osg::ref_ptr<osg::Vec3Array> points(std::initializer_list<osg::Vec3f> list)
{
    return new osg::Vec3Array(list.begin(), list.end());
}

} // namespace

using ShapeDocument = ShapeDocumentTest;

TEST_F(ShapeDocument, EveryShapeSurvivesSaveAndLoad)
{
    osg::ref_ptr<wbBox> box = new wbBox;
    box->setSize(osg::Vec3d(2.5, 0.75, 4.0));
    box->setPosition(osg::Vec3f(1, 2, 3));
    box->setRotation(osg::Vec3f(0.0f, 0.0f, 0.5f));
    box->set_clr(osg::Vec4f(1, 0, 0, 1));
    box->set_name("scatola");

    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    polyline->setVertices(*points({{0, 0, 0}, {1.5f, 0, 0}, {1.5f, 2.25f, -1}}));
    polyline->set_closed(true);
    polyline->setPosition(osg::Vec3f(-4, 0, 1));

    osg::ref_ptr<wbCylinder> cylinder = new wbCylinder;
    cylinder->set_radius(0.3);
    cylinder->set_height(7.5);
    cylinder->set_segments(12);
    cylinder->setScale(osg::Vec3f(2, 2, 1));

    osg::ref_ptr<wbLabel> label = new wbLabel;
    label->set_text("Quota più alta");
    label->set_height(0.25);
    label->set_clr(osg::Vec4f(0, 0.5f, 1, 1));

    for (iGeometricGroup* shape : {(iGeometricGroup*)box.get(), (iGeometricGroup*)polyline.get(),
                                   (iGeometricGroup*)cylinder.get(), (iGeometricGroup*)label.get()})
        layer->addObject(shape, true);
    std::string const path = dir + "/forme.ims";
    ASSERT_TRUE(document->saveAs(path));
    ASSERT_TRUE(document->load(path));

    wbBox* box2 = reloaded(document.get(), box.get());
    ASSERT_NE(box2, nullptr);
    EXPECT_EQ(box2->getSize(), osg::Vec3d(2.5, 0.75, 4.0));

    wbPolyline* polyline2 = reloaded(document.get(), polyline.get());
    ASSERT_NE(polyline2, nullptr);
    EXPECT_TRUE(polyline2->get_closed());
    ASSERT_EQ(polyline2->getNumVertices(), 3);
    EXPECT_EQ((*polyline2->getVertices())[2], osg::Vec3f(1.5f, 2.25f, -1));

    wbCylinder* cylinder2 = reloaded(document.get(), cylinder.get());
    ASSERT_NE(cylinder2, nullptr);
    EXPECT_EQ(cylinder2->get_radius(), 0.3);
    EXPECT_EQ(cylinder2->get_height(), 7.5);
    EXPECT_EQ(cylinder2->get_segments(), 12);

    wbLabel* label2 = reloaded(document.get(), label.get());
    ASSERT_NE(label2, nullptr);
    EXPECT_EQ(label2->get_text(), "Quota più alta");
    EXPECT_EQ(label2->get_height(), 0.25);
}

TEST(ShapeValues, SizesAreNeverNegativeNorUndefined)
{
    osg::ref_ptr<wbBox> box = new wbBox;
    box->setSize(osg::Vec3d(-1.0, std::nan(""), std::numeric_limits<double>::infinity()));
    EXPECT_EQ(box->getSize(), osg::Vec3d(0, 0, 0));
    box->set_sizey(2.0);
    EXPECT_EQ(box->getSize(), osg::Vec3d(0, 2, 0));

    osg::ref_ptr<wbCylinder> cylinder = new wbCylinder;
    cylinder->set_radius(-3.0);
    cylinder->set_segments(1);
    EXPECT_EQ(cylinder->get_radius(), 0.0);
    EXPECT_EQ(cylinder->get_segments(), 3);
    cylinder->set_segments(1 << 30);
    EXPECT_EQ(cylinder->get_segments(), 512);

    osg::ref_ptr<wbLabel> label = new wbLabel;
    label->set_height(-0.5);
    EXPECT_EQ(label->get_height(), 0.0);

    // Vertex edits outside the list change nothing.
    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    polyline->addVertex(osg::Vec3f(1, 1, 1));
    polyline->setVertex(1, osg::Vec3f(9, 9, 9));
    polyline->setVertex(-1, osg::Vec3f(9, 9, 9));
    polyline->removeVertex(5);
    ASSERT_EQ(polyline->getNumVertices(), 1);
    EXPECT_EQ((*polyline->getVertices())[0], osg::Vec3f(1, 1, 1));
}

// The polyline's own level: a vertex count, three doubles a vertex, the
// closed flag.
TEST(ShapeStreams, PolylineLevelBytes)
{
    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    polyline->setVertices(*points({{1, 2, 3}, {-0.5f, 0, 8}}));
    polyline->set_closed(true);
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    polyline->wbPolyline::write(out);
    std::string const expected =
        i32(2) + f64(1) + f64(2) + f64(3) + f64(-0.5) + f64(0) + f64(8) + std::string(1, '\1');
    EXPECT_EQ(buffer.str(), expected);

    osg::ref_ptr<wbPolyline> back = new wbPolyline;
    iMemoryBuffer in(expected);
    iInStream stream(&in);
    back->wbPolyline::read(stream, 1);
    EXPECT_TRUE(back->get_closed());
    EXPECT_EQ(*back->getVertices(), *polyline->getVertices());
}

TEST(ShapeStreams, DamagedRecordsFailWithoutHarm)
{
    // A vertex count far beyond what the stream holds fails before any
    // allocation of that size.
    osg::ref_ptr<wbPolyline> polyline = new wbPolyline;
    iMemoryBuffer huge(i32(0x7fffffff) + f64(1));
    iInStream hugeStream(&huge);
    EXPECT_THROW(polyline->wbPolyline::read(hugeStream, 1), std::exception);
    iMemoryBuffer negative(i32(0xffffffff));
    iInStream negativeStream(&negative);
    EXPECT_THROW(polyline->wbPolyline::read(negativeStream, 1), std::exception);
    EXPECT_EQ(polyline->getNumVertices(), 0);

    // Stored values a user could not give are corrected on reading.
    osg::ref_ptr<wbCylinder> cylinder = new wbCylinder;
    iMemoryBuffer bad(f64(std::nan("")) + f64(-2) + i32(0));
    iInStream badStream(&bad);
    cylinder->wbCylinder::read(badStream, 1);
    EXPECT_EQ(cylinder->get_radius(), 0.0);
    EXPECT_EQ(cylinder->get_height(), 0.0);
    EXPECT_EQ(cylinder->get_segments(), 3);
}
