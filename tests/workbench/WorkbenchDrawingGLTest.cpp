#include "WorkbenchGLSupport.h"

#include "app/wbPropertyEditor.h"
#include "app/wbShapePalette.h"
#include "shapes/wbBox.h"
#include "shapes/wbPolyline.h"

#include <iModelStage/dimensioning/iLinearQuote.h>
#include <iModelStage/editing/iEditingManager.h>
#include <iModelStage/frame/iProperty.h>

#include <QCursor>
#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>

#include <osg/ComputeBoundsVisitor>

#include <map>

namespace {

// Everything a reopened object must give back: class, matrix, the values
// of its properties that have a plain type, and its points.
struct Record {
    std::string cls;
    osg::Matrixd matrix;
    std::map<std::string, std::string> properties;
    std::vector<osg::Vec3f> points;
};

std::string valueText(iProperty const& property, iRoot const* object)
{
    std::string const type = property.getTypeName();
    auto vec = [](osg::Vec4f const& v) {
        return std::to_string(v.x()) + " " + std::to_string(v.y()) + " " + std::to_string(v.z()) + " " +
               std::to_string(v.w());
    };
    if (type == "double" || type == "iScaleUnit")
        return std::to_string(property.get<double>(object));
    if (type == "int")
        return std::to_string(property.get<int>(object));
    if (type == "bool" || type == "iBoolSwitch")
        return property.get<bool>(object) ? "true" : "false";
    if (type == "std::string")
        return property.get<std::string>(object);
    if (type == "iColor4")
        return vec(property.get<iColor4>(object));
    return std::string();
}

Record record(iTransformGroup* object)
{
    Record r{object->getClassName(), object->getMatrix(), {}, {}};
    for (iClass const* level = &object->getClass(); level; level = level->getParent())
        for (iProperty const* property : level->getProperties()) {
            std::string const value = valueText(*property, object);
            if (!value.empty())
                r.properties[property->getName()] = value;
        }
    if (auto* line = dynamic_cast<wbPolyline*>(object))
        r.points.assign(line->getVertices()->begin(), line->getVertices()->end());
    if (auto* quote = dynamic_cast<iLinearQuote*>(object))
        r.points = {quote->getStartPoint(), quote->getEndPoint()};
    return r;
}

bool near(osg::Vec3f const& a, osg::Vec3f const& b, float tolerance = 1e-5f)
{
    return (a - b).length() <= tolerance;
}

// A polyline's vertex in the world: vertices are kept in its own frame.
osg::Vec3f vertex(wbPolyline* line, int i)
{
    return osg::Vec3f(osg::Vec3d((*line->getVertices())[i]) * line->getMatrix());
}

// Whether p is one of the eight corners of the box.
bool isCorner(wbBox* box, osg::Vec3f const& p)
{
    osg::Vec3d const size = box->getSize();
    for (int i = 0; i < 8; ++i) {
        osg::Vec3d const local((i & 1) ? size.x() : 0.0, (i & 2) ? size.y() : 0.0, (i & 4) ? size.z() : 0.0);
        if (near(osg::Vec3f(local * box->getMatrix()), p))
            return true;
    }
    return false;
}

// Pixels of a clearly reddish or bluish tone.
int countTone(QImage const& picture, bool red)
{
    int found = 0;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            QColor const c = picture.pixelColor(x, y);
            int const mine = red ? c.red() : c.blue();
            int const other = red ? c.blue() : c.red();
            if (mine > 120 && c.green() < mine / 2 && other < mine / 2)
                ++found;
        }
    return found;
}

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
    // The box standing left or right of the y axis.
    wbBox* box(bool right)
    {
        for (wbBox* b : all<wbBox>())
            if ((b->getPosition().x() > 0.0f) == right)
                return b;
        return nullptr;
    }
    void clicks(std::initializer_list<osg::Vec3f> points)
    {
        for (osg::Vec3f const& p : points)
            click(at(p));
        frames(2);
    }
    // Two boxes of height 1, (-6,-2)-(-3,1) and (2,-2)-(5,1), and a
    // polyline of three vertices above them.
    void drawBoxesAndPolyline()
    {
        ASSERT_TRUE(press("tool.box"));
        clicks({{-6, -2, 0}, {-3, 1, 0}, {-3, 2, 0}});
        ASSERT_TRUE(press("tool.box"));
        clicks({{2, -2, 0}, {5, 1, 0}, {5, 2, 0}});
        ASSERT_EQ(all<wbBox>().size(), 2u);
        ASSERT_TRUE(press("tool.polyline"));
        clicks({{-6, 4, 0}, {0, 5, 0}, {6, 4, 0}});
        key(Qt::Key_Return);
        frames(2);
        ASSERT_EQ(all<wbPolyline>().size(), 1u);
        ASSERT_EQ(all<wbPolyline>().front()->getNumVertices(), 3);
    }
    // Selects the polyline by a click on it and switches handle editing on.
    void editPolylineHandles()
    {
        click(at({-3, 4.5f, 0}));
        ASSERT_TRUE(layer()->isObjectSelected(all<wbPolyline>().front()));
        ASSERT_EQ(layer()->getSelectionCount(), 1);
        ASSERT_TRUE(press("tool.editing"));
        ASSERT_TRUE(window->tools()->action("editing")->isChecked());
        ASSERT_TRUE(iEditingManager::getInstance()->getEditing());
        ASSERT_NE(iEditingManager::getInstance()->getWorkingLayer(), nullptr);
    }
    // Picks the handle at from and moves it to to with the move tool.
    void moveHandle(osg::Vec3f const& from, osg::Vec3f const& to)
    {
        click(at(from));
        iGeometricsLayer* handles = iEditingManager::getInstance()->getWorkingLayer();
        ASSERT_EQ(handles->getSelectionCount(), 1);
        ASSERT_TRUE(press("tool.move"));
        click(at(from));
        hover(at((from + to) / 2));
        click(at(to));
        frames(2);
    }
    std::map<std::string, Record> records()
    {
        std::map<std::string, Record> out;
        osg::Group* root = layer()->getObjectsRoot();
        for (unsigned int i = 0; i < root->getNumChildren(); ++i)
            if (auto* object = dynamic_cast<iTransformGroup*>(root->getChild(i)))
                out[object->getClassName() + std::string(":") + std::to_string(i)] = record(object);
        return out;
    }
};

TEST_F(WorkbenchDrawing, DrawSelectTransformDimensionEditSaveAndReopenAsDrawn)
{
    drawBoxesAndPolyline();
    wbBox* left = box(false);
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(left->getPosition(), osg::Vec3f(-6, -2, 0));
    EXPECT_EQ(left->getSize(), osg::Vec3d(3, 3, 1));

    // A click takes one box, a window drawn rightwards the other.
    click(at({-4.5f, -0.5f, 0}));
    EXPECT_TRUE(layer()->isObjectSelected(left));
    EXPECT_EQ(layer()->getSelectionCount(), 1);
    ASSERT_TRUE(press("tool.selectWindow"));
    drag(at({1.5f, -2.5f, 0}), at({5.5f, 1.5f, 0}));
    ASSERT_TRUE(layer()->isObjectSelected(box(true)));
    EXPECT_EQ(layer()->getSelectionCount(), 1);

    // Moved one to the right by typed points, then turned a quarter about
    // its corner; undo takes both back, redo brings the move again.
    ASSERT_TRUE(press("tool.move"));
    type("2 -2 0");
    type("3 -2 0");
    frames(2);
    EXPECT_EQ(box(true)->getPosition(), osg::Vec3f(3, -2, 0));
    ASSERT_TRUE(press("tool.rotate"));
    type("3 -2 0");
    type("4 -2 0");
    type("3 -1 0");
    frames(2);
    osg::Vec3d const turned = osg::Vec3d(1, 0, 0) * box(true)->getMatrix();
    EXPECT_NEAR(turned.x(), 3.0, 1e-5);
    EXPECT_NEAR(turned.y(), -1.0, 1e-5);
    key(Qt::Key_Z, Qt::ControlModifier);
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_NE(box(true), nullptr);
    EXPECT_EQ(box(true)->getPosition(), osg::Vec3f(2, -2, 0));
    key(Qt::Key_Y, Qt::ControlModifier);
    ASSERT_NE(box(true), nullptr);
    EXPECT_TRUE(near(osg::Vec3f(osg::Vec3d(1, 0, 0) * box(true)->getMatrix()), osg::Vec3f(4, -2, 0)));

    // The dimension's points are the corners the snaps found near the
    // cursor, exactly.
    ASSERT_TRUE(press("tool.linearDimension"));
    clicks({{-3.05f, -2.05f, 0}, {3.05f, -1.95f, 0}, {0, -3, 0}});
    ASSERT_EQ(all<iLinearQuote>().size(), 1u);
    iLinearQuote* quote = all<iLinearQuote>().front();
    EXPECT_TRUE(isCorner(box(false), quote->getStartPoint())) << quote->getStartPoint().x();
    EXPECT_TRUE(isCorner(box(true), quote->getEndPoint())) << quote->getEndPoint().x();
    EXPECT_NEAR(quote->getStartPoint().x(), -3.0f, 1e-5f);
    EXPECT_NEAR(quote->getEndPoint().x(), 3.0f, 1e-5f);

    // The middle vertex dragged by its handle with the move tool.
    editPolylineHandles();
    moveHandle({0, 5, 0}, {0, 7, 0});
    wbPolyline* line = all<wbPolyline>().front();
    EXPECT_TRUE(near(vertex(line, 1), osg::Vec3f(0, 7, 0), 0.05f)) << vertex(line, 1).y();
    EXPECT_TRUE(near(vertex(line, 0), osg::Vec3f(-6, 4, 0), 1e-4f));
    ASSERT_TRUE(press("tool.editing"));
    EXPECT_FALSE(iEditingManager::getInstance()->getEditing());
    EXPECT_FALSE(window->tools()->action("editing")->isChecked());
    EXPECT_TRUE(near(vertex(all<wbPolyline>().front(), 1), osg::Vec3f(0, 7, 0), 0.05f));

    // A screenshot of the drawing through the tool shows both colours.
    box(false)->setColor({1, 0, 0, 1});
    box(true)->setColor({0, 0, 1, 1});
    layer()->clearObjectSelection();
    frames(2);
    QImage const shot = screenshot(at({-7, 8, 0}), at({7, -4, 0}));
    ASSERT_FALSE(shot.isNull());
    EXPECT_GT(shot.width(), 100);
    EXPECT_GT(countTone(shot, true), 500);
    EXPECT_GT(countTone(shot, false), 500);

    QString const file = dir.filePath("drawn.ims");
    ASSERT_TRUE(window->fileMenu()->saveAs(file));
    std::map<std::string, Record> const drawn = records();
    ASSERT_EQ(drawn.size(), 4u);
    closeWindow();
    openWindow();
    ASSERT_TRUE(window->fileMenu()->openFile(file));
    std::map<std::string, Record> const reopened = records();
    ASSERT_EQ(reopened.size(), drawn.size());
    for (auto const& [key, was] : drawn) {
        auto const found = reopened.find(key);
        ASSERT_NE(found, reopened.end()) << key;
        Record const& now = found->second;
        EXPECT_EQ(now.properties, was.properties) << key;
        ASSERT_EQ(now.points.size(), was.points.size()) << key;
        for (size_t i = 0; i < was.points.size(); ++i)
            EXPECT_TRUE(near(now.points[i], was.points[i])) << key << " point " << i;
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c)
                EXPECT_NEAR(now.matrix(r, c), was.matrix(r, c), 1e-5) << key;
    }
    // The comparison covered the shapes' own properties.
    for (auto const& [key, was] : drawn) {
        if (was.cls == "wbBox") {
            EXPECT_EQ(was.properties.count("sizex"), 1u) << key;
        }
    }

    // Opened, the plan is centred on the drawing.
    frames(2);
    osg::ComputeBoundsVisitor bounds;
    layer()->getObjectsRoot()->accept(bounds);
    QPoint const centre = at(bounds.getBoundingBox().center());
    EXPECT_NEAR(centre.x(), surface()->width() / 2, 4);
    EXPECT_NEAR(centre.y(), surface()->height() / 2, 4);
}

TEST_F(WorkbenchDrawing, UndoWhileEditingHandlesEndsEditingAndUnchecksTheToggle)
{
    drawBoxesAndPolyline();
    editPolylineHandles();
    moveHandle({6, 4, 0}, {6, 2, 0});
    EXPECT_TRUE(near(vertex(all<wbPolyline>().front(), 2), osg::Vec3f(6, 2, 0), 0.05f));

    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_FALSE(iEditingManager::getInstance()->getEditing());
    EXPECT_FALSE(window->tools()->action("editing")->isChecked());
    EXPECT_TRUE(near(vertex(all<wbPolyline>().front(), 2), osg::Vec3f(6, 4, 0), 1e-4f));
    // And on again from the button, with the polyline selected anew.
    click(at({-3, 4.5f, 0}));
    ASSERT_TRUE(press("tool.editing"));
    EXPECT_TRUE(iEditingManager::getInstance()->getEditing());
    ASSERT_TRUE(press("tool.editing"));
    EXPECT_FALSE(iEditingManager::getInstance()->getEditing());
}

TEST_F(WorkbenchDrawing, PropertyEditorFollowsToolsAndShowsValuesWithoutEditors)
{
    drawBoxesAndPolyline();
    click(at({-4.5f, -0.5f, 0}));
    auto* editor = window->findChild<wbPropertyEditor*>();
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(processUntil([&] { return editor->object() == box(false); }));
    auto* position = qobject_cast<QLineEdit*>(editor->editorOf("position"));
    ASSERT_NE(position, nullptr);
    EXPECT_EQ(position->text(), "-6 -2 0");
    auto* dof = qobject_cast<QLineEdit*>(editor->editorOf("dof"));
    ASSERT_NE(dof, nullptr);
    EXPECT_EQ(dof->text(), "free");

    // A move by the tool shows in the panel without selecting again.
    ASSERT_TRUE(press("tool.move"));
    type("0 0 0");
    type("1 2 0");
    ASSERT_TRUE(processUntil([&] { return position->text() == "-5 0 0"; })) << position->text().toStdString();
    EXPECT_EQ(editor->editorOf("position"), position);
}

TEST_F(WorkbenchDrawing, AShapeDraggedFromThePaletteLandsWhereItIsDropped)
{
    auto* palette = window->findChild<wbShapePalette*>();
    ASSERT_NE(palette, nullptr);
    ASSERT_GT(palette->count(), 0);
    EXPECT_EQ(palette->item(0)->text(), "Box");

    // What Qt hands the window under the pointer while a drag passes over
    // the plan and ends there: enter, move, drop, at the pointer's place.
    osg::Vec3f const target(3, 2, 0);
    QPoint const onSurface = at(target);
    QPoint const global = surface()->mapToGlobal(onSurface);
    QCursor::setPos(global);
    ASSERT_TRUE(processUntil([&] { return QCursor::pos() == global; }));
    QWindow* top = window->windowHandle();
    QPoint const inWindow = top->mapFromGlobal(global);
    std::unique_ptr<QMimeData> mime(palette->payloadFor("wbBox"));
    ASSERT_NE(mime, nullptr);
    QDragEnterEvent enter(inWindow, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(top, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDragMoveEvent move(inWindow, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(top, &move);
    EXPECT_TRUE(move.isAccepted());
    QDropEvent drop(inWindow, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(top, &drop);
    frames(2);

    ASSERT_EQ(all<wbBox>().size(), 1u);
    wbBox* dropped = all<wbBox>().front();
    // Within a pixel of the drop point.
    EXPECT_TRUE(near(dropped->getPosition(), target, 0.1f)) << dropped->getPosition().x() << " "
                                                            << dropped->getPosition().y();
    EXPECT_TRUE(layer()->isObjectSelected(dropped));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_TRUE(all<wbBox>().empty());
}

} // namespace
