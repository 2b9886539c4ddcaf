#include "WorkbenchGLSupport.h"

#include "app/wbPropertyEditor.h"
#include "app/wbToolActions.h"

#include <iModelStage/frame/iObjectMacros.h>

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>


// A flat square of side 2 around its origin, drawn unlit in its colour, so
// that a picture shows the colour as it is.
class wbTestSquare : public iGeometricGroup {
    I_CLASS(wbTestSquare, iGeometricGroup, 1)
    I_OSG_NODE(wbTestSquare)
public:
    wbTestSquare() = default;
    wbTestSquare(wbTestSquare const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricGroup(other, copyop)
    {
    }

protected:
    ~wbTestSquare() override = default;
};

class wbTestSquareRenderer : public iGeometryRenderer {
    I_CLASS(wbTestSquareRenderer, iGeometryRenderer, 1)
    I_OSG_NODE(wbTestSquareRenderer)
public:
    wbTestSquareRenderer() = default;
    wbTestSquareRenderer(wbTestSquareRenderer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometryRenderer(other, copyop)
    {
    }
    void rebuildGeometry(iGeometricGroup* group) override
    {
        addChild(unlitQuad(group, -1.0f, -1.0f, 1.0f, 1.0f));
    }

protected:
    ~wbTestSquareRenderer() override = default;
};

I_REGISTER_CLASS(wbTestSquare)
I_REGISTER_CLASS(wbTestSquareRenderer)

namespace {

osg::Vec4f const red(1, 0, 0, 1);
osg::Vec4f const blue(0, 0, 1, 1);

int countColour(QImage const& picture, QColor const& colour, int tolerance = 40)
{
    int found = 0;
    for (int y = 0; y < picture.height(); y += 2)
        for (int x = 0; x < picture.width(); x += 2) {
            QColor const c = picture.pixelColor(x, y);
            if (std::abs(c.red() - colour.red()) <= tolerance && std::abs(c.green() - colour.green()) <= tolerance &&
                std::abs(c.blue() - colour.blue()) <= tolerance)
                ++found;
        }
    return found;
}

class WorkbenchWindow : public WorkbenchWindowTest {
protected:
    void SetUp() override
    {
        WorkbenchWindowTest::SetUp();
        iGeometryRendererManager::registerGeometricRenderer("wbTestSquare", "wbTestSquareRenderer", 1);
    }
    wbTestSquare* square(char const* name, osg::Vec3f const& where, osg::Vec4f const& colour)
    {
        osg::ref_ptr<wbTestSquare> made = new wbTestSquare;
        made->set_name(name);
        made->setColor(colour);
        made->setPosition(where);
        window->document()->manager()->storeForUndo(std::string("Add ") + name);
        layer()->addObject(made.get(), true);
        made->updateGeometry(false);
        frames(2);
        return made.get();
    }
    wbTestSquare* find(char const* name)
    {
        return layer() ? dynamic_cast<wbTestSquare*>(layer()->findObjectByName(name)) : nullptr;
    }
    // The message box on screen, if any.
    QMessageBox* errorBox()
    {
        for (QMessageBox* box : window->findChildren<QMessageBox*>("errorBox"))
            if (box->isVisible())
                return box;
        return nullptr;
    }
};

TEST_F(WorkbenchWindow, BothViewersDrawTheDocumentAndTheWindowPictureShowsThem)
{
    EXPECT_EQ(plan()->getCurrentViewLookup(), iView::iLookupTop);
    EXPECT_EQ(window->viewer(1)->getCurrentViewLookup(), iView::iLookupAxonometric);
    square("a", {0, 0, 0}, red);
    square("b", {4, 0, 0}, blue);
    for (int i = 0; i < 2; ++i)
        window->viewer(i)->zoomBounds(NodeList{find("a"), find("b")});
    ASSERT_TRUE(frames(2));
    // Unlit, the squares show their very colours in the middle.
    for (int i = 0; i < 2; ++i) {
        QImage const& frame = window->viewer(i)->lastFrame();
        EXPECT_EQ(frame.pixelColor(at({0, 0, 0}, i)), QColor(Qt::red)) << "viewer " << i;
        EXPECT_EQ(frame.pixelColor(at({4, 0, 0}, i)), QColor(Qt::blue)) << "viewer " << i;
        EXPECT_NE(frame.pixelColor(at({2, 2, 0}, i)), QColor(Qt::red)) << "viewer " << i;
    }
    QImage const picture = window->grabWindow();
    EXPECT_EQ(picture.size(), window->size());
    EXPECT_GT(countColour(picture, Qt::red), 200);
    EXPECT_TRUE(window->windowTitle().startsWith("Untitled*"));
}

TEST_F(WorkbenchWindow, FourViewsFromTheViewMenuShowTopFrontRightAndPerspective)
{
    EXPECT_FALSE(window->viewer(2)->isVisible());
    EXPECT_FALSE(window->viewer(3)->isVisible());
    square("a", {0, 0, 0}, red);
    key(Qt::Key_0, Qt::ControlModifier);
    ASSERT_TRUE(window->fourViews());
    EXPECT_TRUE(window->findChild<QAction*>("view.fourViews")->isChecked());
    ASSERT_TRUE(viewersDrawing());
    iView::iViewLookup const expected[] = {iView::iLookupTop, iView::iLookupAxonometric, iView::iLookupFront,
                                           iView::iLookupRight};
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(window->viewer(i)->isVisible()) << i;
        EXPECT_EQ(window->viewer(i)->getCurrentViewLookup(), expected[i]) << i;
    }
    // Plan over right elevation, front over perspective.
    auto place = [this](int i) { return window->viewer(i)->mapTo(window.get(), QPoint(0, 0)); };
    EXPECT_GT(place(2).x(), place(0).x());
    EXPECT_EQ(place(2).y(), place(0).y());
    EXPECT_GT(place(3).y(), place(0).y());
    EXPECT_EQ(place(3).x(), place(0).x());
    EXPECT_EQ(place(1), QPoint(place(2).x(), place(3).y()));
    // The drawing is framed anew in each: the plan and the perspective
    // show the square in its middle, the elevations see it edge on.
    ASSERT_TRUE(frames(3));
    for (int i : {0, 1}) {
        QImage const& frame = window->viewer(i)->lastFrame();
        EXPECT_EQ(frame.pixelColor(frame.width() / 2, frame.height() / 2), QColor(Qt::red)) << i;
    }
    QImage const picture = window->grabWindow();
    EXPECT_GT(countColour(picture, Qt::red), 200);

    QTest::keyClick(surface(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_FALSE(window->fourViews());
    EXPECT_FALSE(window->viewer(2)->isVisible());
    EXPECT_FALSE(window->viewer(3)->isVisible());
}

TEST_F(WorkbenchWindow, ClickAndWindowSelectionThenDeleteAndUndoFromTheKeyboard)
{
    wbTestSquare* a = square("a", {-4, 0, 0}, red);
    wbTestSquare* b = square("b", {4, 0, 0}, blue);
    click(at({-4, 0, 0}));
    EXPECT_TRUE(layer()->isObjectSelected(a));
    EXPECT_FALSE(layer()->isObjectSelected(b));
    click(at({0, 5, 0}));
    EXPECT_EQ(layer()->getSelectionCount(), 0);

    // A window drawn rightwards takes what lies inside it.
    ASSERT_TRUE(press("tool.selectWindow"));
    drag(at({2.5f, -2, 0}), at({5.5f, 2, 0}));
    EXPECT_FALSE(layer()->isObjectSelected(a));
    EXPECT_TRUE(layer()->isObjectSelected(b));

    // Delete and Ctrl+Z typed on the viewer's surface reach the window's
    // actions: the removal is an undo step.
    key(Qt::Key_Delete);
    EXPECT_EQ(find("b"), nullptr);
    EXPECT_NE(find("a"), nullptr);
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_NE(find("b"), nullptr);
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(find("b"), nullptr);
}

TEST_F(WorkbenchWindow, MoveAndRotateByTypedPointsWithUndoAndRedo)
{
    wbTestSquare* a = square("a", {0, 0, 0}, red);
    click(at({0, 0, 0}));
    ASSERT_TRUE(layer()->isObjectSelected(a));

    ASSERT_TRUE(press("tool.move"));
    EXPECT_FALSE(window->promptLabel()->text().isEmpty());
    type("0 0 0");
    type("3 0 0");
    frames(2);
    EXPECT_EQ(find("a")->getPosition(), osg::Vec3f(3, 0, 0));

    ASSERT_TRUE(press("tool.rotate"));
    type("3 0 0");
    type("4 0 0");
    type("3 1 0");
    frames(2);
    osg::Vec3d const turned = osg::Vec3d(1, 0, 0) * find("a")->getMatrix() - osg::Vec3d(find("a")->getPosition());
    EXPECT_NEAR(turned.x(), 0.0, 1e-5);
    EXPECT_NEAR(turned.y(), 1.0, 1e-5);

    key(Qt::Key_Z, Qt::ControlModifier);
    osg::Vec3d const back = osg::Vec3d(1, 0, 0) * find("a")->getMatrix();
    EXPECT_NEAR(back.x(), 4.0, 1e-5);
    EXPECT_NEAR(back.y(), 0.0, 1e-5);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(find("a")->getPosition(), osg::Vec3f(0, 0, 0));
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(find("a")->getPosition(), osg::Vec3f(3, 0, 0));
    // And the picture follows: red where the square went.
    layer()->clearObjectSelection();
    frames(2);
    QPoint const p = at({3, 0, 0});
    EXPECT_EQ(plan()->lastFrame().pixelColor(p), QColor(Qt::red));
}

TEST_F(WorkbenchWindow, SavedDocumentReopensInANewWindowWithTheSameObjects)
{
    wbTestSquare* a = square("first", {1, 2, 0}, red);
    square("second", {-3, 1, 0}, blue);
    osg::Matrixd turned = osg::Matrixd::rotate(0.5, osg::Vec3d(0, 0, 1)) * osg::Matrixd::translate(1, 2, 0);
    a->setMatrix(turned);
    QString const file = dir.filePath("drawing.ims");
    ASSERT_TRUE(window->fileMenu()->saveAs(file));
    EXPECT_TRUE(window->windowTitle().startsWith("drawing.ims -"));

    struct Seen {
        std::string cls;
        osg::Matrixd matrix;
        osg::Vec4f colour;
    };
    std::map<std::string, Seen> before;
    for (char const* name : {"first", "second"})
        before[name] = {find(name)->getClassName(), find(name)->getMatrix(), find(name)->getColor()};

    closeWindow();
    openWindow();
    EXPECT_EQ(find("first"), nullptr);
    ASSERT_TRUE(window->fileMenu()->openFile(file));
    for (auto const& [name, seen] : before) {
        wbTestSquare* object = find(name.c_str());
        ASSERT_NE(object, nullptr) << name;
        EXPECT_EQ(object->getClassName(), seen.cls);
        EXPECT_EQ(object->getColor(), seen.colour);
        for (int r = 0; r < 4; ++r)
            for (int c = 0; c < 4; ++c)
                EXPECT_NEAR(object->getMatrix()(r, c), seen.matrix(r, c), 1e-6) << name;
    }
    frames(2);
    EXPECT_GT(countColour(plan()->lastFrame(), Qt::blue), 100);
    EXPECT_EQ(wbApplication::recentFiles().value(0), QFileInfo(file).absoluteFilePath());
}

TEST_F(WorkbenchWindow, DamagedFileAndUnwritablePlaceAreToldAndTheDrawingStays)
{
    square("kept", {0, 0, 0}, red);
    QString const damaged = dir.filePath("damaged.ims");
    {
        QFile file(damaged);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(60, '\x07'));
    }
    EXPECT_FALSE(window->fileMenu()->openFile(damaged));
    ASSERT_NE(errorBox(), nullptr);
    EXPECT_TRUE(errorBox()->isVisible());
    EXPECT_TRUE(errorBox()->text().contains("damaged.ims")) << errorBox()->text().toStdString();
    QTest::mouseClick(static_cast<QWidget*>(errorBox()->button(QMessageBox::Ok)), Qt::LeftButton);
    ASSERT_TRUE(processUntil([this] { return errorBox() == nullptr; }));

    QString const nowhere = dir.filePath("missing/folder/drawing.ims");
    EXPECT_FALSE(window->fileMenu()->saveAs(nowhere));
    ASSERT_NE(errorBox(), nullptr);
    EXPECT_TRUE(errorBox()->text().contains(nowhere));
    errorBox()->close();

    ASSERT_NE(find("kept"), nullptr);
    frames(2);
    EXPECT_GT(countColour(plan()->lastFrame(), Qt::red), 100);
    EXPECT_TRUE(window->document()->isModified());
}

TEST_F(WorkbenchWindow, ScreenshotToolSavesTheDraggedRectangleOfTheView)
{
    square("a", {0, 0, 0}, red);
    QImage const picture = screenshot(at({-3, 3, 0}), at({3, -3, 0}));
    ASSERT_FALSE(picture.isNull());
    QPoint const size = at({3, -3, 0}) - at({-3, 3, 0});
    EXPECT_NEAR(picture.width(), size.x(), 2);
    EXPECT_NEAR(picture.height(), size.y(), 2);
    // The square fills the middle third of the picture.
    EXPECT_GT(countColour(picture, Qt::red), picture.width() * picture.height() / 4 / 9 * 3 / 4);
    EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() / 2), QColor(Qt::red));
}

TEST_F(WorkbenchWindow, PropertyEditorWritesTypedValuesIntoTheSelectedObject)
{
    wbTestSquare* a = square("before", {0, 0, 0}, red);
    click(at({0, 0, 0}));
    auto* editor = window->findChild<wbPropertyEditor*>();
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(processUntil([&] { return editor->object() == a; }));

    auto* name = qobject_cast<QLineEdit*>(editor->editorOf("name"));
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(name->text(), "before");
    name->setFocus();
    name->selectAll();
    QTest::keyClicks(name, "after");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_EQ(a->get_name(), "after");


    // A point property takes three numbers; anything else is put back.
    ASSERT_TRUE(processUntil([&] { return editor->editorOf("position") != nullptr; }));
    auto* position = qobject_cast<QLineEdit*>(editor->editorOf("position"));
    ASSERT_NE(position, nullptr);
    position->setFocus();
    position->selectAll();
    QTest::keyClicks(position, "2 3");
    QTest::keyClick(position, Qt::Key_Return);
    EXPECT_EQ(a->getPosition(), osg::Vec3f(0, 0, 0));
    EXPECT_EQ(position->text(), "0 0 0");
    position->selectAll();
    QTest::keyClicks(position, "2 3 0");
    QTest::keyClick(position, Qt::Key_Return);
    EXPECT_EQ(a->getPosition(), osg::Vec3f(2, 3, 0));

    // Two steps, taken back one by one.
    // Keys go where the focus is: a click gives it back to the viewer.
    click(at({0, 6, 0}));
    key(Qt::Key_Z, Qt::ControlModifier);
    ASSERT_NE(find("after"), nullptr);
    EXPECT_EQ(find("after")->getPosition(), osg::Vec3f(0, 0, 0));
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(find("before"), nullptr);
    EXPECT_EQ(find("after"), nullptr);
}

} // namespace
