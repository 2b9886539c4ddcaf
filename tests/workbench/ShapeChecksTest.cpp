#include "workbench/ShapeTestSupport.h"

#include "shapes/wbBox.h"
#include "shapes/wbCylinder.h"
#include "shapes/wbLabel.h"
#include "shapes/wbPointListImport.h"
#include "shapes/wbPolyline.h"
#include "shapes/wbZeroSizeCheck.h"

#include <iModelStage/geometry/iImportExportManager.h>
#include <iModelStage/reporting/iExceptionItem.h>
#include <iModelStage/reporting/iExceptionManager.h>
#include <iModelStage/reporting/iExceptionManagerInterface.h>

#include <fstream>
#include <set>
#include <sstream>

namespace {

// Keeps the findings of every block as they are pushed.
class Findings : public iExceptionManagerInterface {
public:
    void handleBlock(iExceptionBlock* block) override { block->sigItemPushed.connect(this, &Findings::pushed); }
    void pushed(iExceptionItem& item)
    {
        ids.push_back(item.getId());
        objects.insert(item.getObject());
    }
    std::vector<std::string> ids;
    std::set<iNodeGroup*> objects;
};

template <class T>
osg::ref_ptr<T> added(iGeometricsLayer* layer, std::string const& name)
{
    osg::ref_ptr<T> shape = new T;
    shape->set_name(name);
    layer->addObject(shape.get(), true);
    return shape;
}

osg::ref_ptr<iTransformGroup> imported(std::string const& text)
{
    std::istringstream in(text);
    return wbPointListImport::importFromStream(in, "punti");
}

wbPolyline* polylineAt(osg::Group* group, unsigned int i)
{
    return i < group->getNumChildren() ? dynamic_cast<wbPolyline*>(group->getChild(i)) : nullptr;
}

} // namespace

using ShapeZeroSizeCheck = ShapeDocumentTest;

TEST_F(ShapeZeroSizeCheck, ReportsExactlyTheShapesWithoutExtent)
{
    added<wbBox>(layer, "buona");
    osg::ref_ptr<wbBox> flat = added<wbBox>(layer, "piatta");
    flat->set_sizez(0);
    osg::ref_ptr<wbCylinder> thin = added<wbCylinder>(layer, "sottile");
    thin->set_radius(0);
    added<wbCylinder>(layer, "tonda");
    osg::ref_ptr<wbPolyline> dot = added<wbPolyline>(layer, "punto");
    dot->addVertex(osg::Vec3f(1, 1, 1));
    dot->addVertex(osg::Vec3f(1, 1, 1));
    osg::ref_ptr<wbPolyline> line = added<wbPolyline>(layer, "linea");
    line->addVertex(osg::Vec3f(0, 0, 0));
    line->addVertex(osg::Vec3f(1, 0, 0));
    osg::ref_ptr<wbLabel> mute = added<wbLabel>(layer, "muta");
    mute->set_text("");
    added<wbLabel>(layer, "scritta");
    // Only shapes count: a plain group has no size to speak of.
    layer->addObject(new iTransformGroup, true);

    Findings findings;
    document->setExceptionManagerInterface(&findings);
    iExceptionManager checks(document.get());
    checks.start("Verifica", nullptr, 1, {"wbZeroSizeCheck"});
    document->setExceptionManagerInterface(nullptr);

    EXPECT_EQ(findings.ids, std::vector<std::string>(4, wbZeroSizeCheck::ItemId));
    EXPECT_EQ(findings.objects,
              (std::set<iNodeGroup*>{flat.get(), thin.get(), dot.get(), mute.get()}));
    checks.clear();
}

TEST(ShapePointListImport, ListsBecomePolylines)
{
    wbRegisterClasses();
    osg::ref_ptr<iTransformGroup> group = imported("# due linee\n"
                                                   "1, 2, 3\n"
                                                   "4;5;6\r\n"
                                                   "7\t8\n"
                                                   "\n\n"
                                                   "0 0\n"
                                                   "2 0\n"
                                                   "2 2\n"
                                                   "0 0\n");
    ASSERT_TRUE(group.valid());
    EXPECT_EQ(group->get_name(), "punti");
    ASSERT_EQ(group->getNumChildren(), 2u);

    wbPolyline* open = polylineAt(group.get(), 0);
    ASSERT_NE(open, nullptr);
    EXPECT_FALSE(open->get_closed());
    EXPECT_EQ(open->getPosition(), osg::Vec3f(1, 2, 3));
    ASSERT_EQ(open->getNumVertices(), 3);
    EXPECT_EQ((*open->getVertices())[1], osg::Vec3f(3, 3, 3));
    EXPECT_EQ((*open->getVertices())[2], osg::Vec3f(6, 6, -3));
    // Built, ready to draw before it enters any document.
    EXPECT_NE(rendererOf(open, "wbPolylineRenderer"), nullptr);

    // The repeated first point closes the second line.
    wbPolyline* closed = polylineAt(group.get(), 1);
    ASSERT_NE(closed, nullptr);
    EXPECT_TRUE(closed->get_closed());
    EXPECT_EQ(closed->getNumVertices(), 3);
}

TEST(ShapePointListImport, DamagedInputIsRefusedWhole)
{
    for (char const* text : {"", "# nulla\n\n", "1 2 3\n", "1 2\n3 4\n\n5 6\n", "1 2 3 4\n5 6 7\n",
                             "1 2\ndue 3\n", "1,2,\n3,4\n", "1 2\nnan 3\n", "1e999 2\n3 4\n", "1 2x\n3 4\n"})
        EXPECT_FALSE(imported(text).valid()) << '"' << text << '"';
    // The C locale, whatever the user's: a comma never makes a decimal.
    osg::ref_ptr<iTransformGroup> group = imported("1.5 2\n3 4.25\n");
    ASSERT_TRUE(group.valid());
    EXPECT_EQ(polylineAt(group.get(), 0)->getPosition(), osg::Vec3f(1.5f, 2, 0));
}

using ShapePointListFile = ShapeDocumentTest;

TEST_F(ShapePointListFile, FilesComeThroughTheImportManager)
{
    std::string const good = dir + "/Rilievo.PTS";
    std::ofstream(good) << "0 0 0\n10 0 0\n";
    osg::ref_ptr<osg::Node> node = iImportExportManager::importFromFile(good);
    auto* group = dynamic_cast<iTransformGroup*>(node.get());
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->get_name(), "Rilievo");
    ASSERT_NE(polylineAt(group, 0), nullptr);
    EXPECT_EQ(polylineAt(group, 0)->getNumVertices(), 2);

    std::string const damaged = dir + "/rotto.csv";
    std::ofstream(damaged) << "0 0 0\nzero\n";
    EXPECT_EQ(wbPointListImport().importFromFile(damaged), nullptr);
    EXPECT_EQ(wbPointListImport().importFromFile(dir + "/mancante.pts"), nullptr);
    // Other files are left to the next reader.
    std::string const other = dir + "/punti.txt";
    std::ofstream(other) << "0 0 0\n10 0 0\n";
    EXPECT_EQ(wbPointListImport().importFromFile(other), nullptr);

    EXPECT_EQ(wbPointListImport().getHandledFileExtesions(),
              (std::vector<std::string>{"Elenco di punti (*.pts)", "Elenco di punti (*.csv)"}));
}
