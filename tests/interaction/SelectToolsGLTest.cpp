#include "interaction/ToolsGLFixture.h"

#include <iModelStage/interaction/iSelectIA.h>
#include <iModelStage/interaction/iSelectWindowIA.h>

#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QTimer>

#include <osgGA/EventQueue>

namespace {

// While the pick menu is open, runs act on it once.
void onMenu(std::function<void(QMenu*)> act)
{
    auto* timer = new QTimer;
    QObject::connect(timer, &QTimer::timeout, [timer, act] {
        QMenu* menu = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (qobject_cast<QMenu*>(widget) && widget->isVisible())
                menu = qobject_cast<QMenu*>(widget);
        if (!menu)
            return;
        timer->stop();
        timer->deleteLater();
        act(menu);
    });
    timer->start(10);
}

void choose(QMenu* menu, QAction* action)
{
    menu->setActiveAction(action);
    action->trigger();
    menu->close();
}

class SelectTools : public ToolsGLFixture {
protected:
    void SetUp() override
    {
        ToolsGLFixture::SetUp();
        a = square(-6.0f, -1.0f, -4.0f, 1.0f);
        b = square(2.0f, -1.0f, 4.0f, 1.0f);
        select = new iSelectIA;
        select->setPersistent(true);
        ASSERT_TRUE(manager.pushInteractor(select, false));
        ASSERT_TRUE(viewer.paintFrame());
    }
    void clickAt(osg::Vec3f const& world, unsigned int modifiers = 0)
    {
        select->setKeyModifiers(modifiers);
        drag(select, {pixel(world)});
        manager.loop();
    }
    std::vector<osg::Node*> selection()
    {
        NodeList list;
        layer->getSelectionList(list, nullptr);
        return std::vector<osg::Node*>(list.begin(), list.end());
    }

    osg::ref_ptr<iSnapTestGroup> a;
    osg::ref_ptr<iSnapTestGroup> b;
    iSelectIA* select = nullptr;
};

TEST_F(SelectTools, ClickSelectsClearsAndCtrlToggles)
{
    clickAt({-5.0f, 0.0f, 0.0f});
    EXPECT_EQ(selection(), std::vector<osg::Node*>{a.get()});
    clickAt({3.0f, 0.0f, 0.0f});
    EXPECT_EQ(selection(), std::vector<osg::Node*>{b.get()});
    clickAt({-5.0f, 0.0f, 0.0f}, 1);
    EXPECT_EQ(selection().size(), 2u);
    clickAt({3.0f, 0.0f, 0.0f}, 1);
    EXPECT_EQ(selection(), std::vector<osg::Node*>{a.get()});
    // Empty space clears, unless Ctrl is held.
    clickAt({0.0f, 5.0f, 0.0f}, 1);
    EXPECT_EQ(selection(), std::vector<osg::Node*>{a.get()});
    clickAt({0.0f, 5.0f, 0.0f});
    EXPECT_TRUE(selection().empty());

    // A non-selectable object is no pick; a filtered-out class neither.
    layer->setNodeFlag(a.get(), 1, false);
    clickAt({-5.0f, 0.0f, 0.0f});
    EXPECT_TRUE(selection().empty());
    layer->setNodeFlag(a.get(), 1, true);
    layer->setSelectionFilter({"iGeometricGroup"});
    layer->setSelectionFilterActive(true);
    clickAt({-5.0f, 0.0f, 0.0f});
    EXPECT_TRUE(selection().empty());
}

TEST_F(SelectTools, OverlappingObjectsOfferAMenuWhoseChoiceIsSelected)
{
    osg::ref_ptr<iSnapTestGroup> over = square(-6.5f, -0.5f, -4.5f, 1.5f, 1.0f);
    ASSERT_TRUE(viewer.paintFrame());
    std::vector<QString> entries;
    onMenu([&](QMenu* menu) {
        for (QAction* action : menu->actions())
            entries.push_back(action->text());
        for (QAction* action : menu->actions())
            if (action->property("_parent").toLongLong() == qlonglong(reinterpret_cast<quintptr>(static_cast<osg::Group*>(over.get()))))
                choose(menu, action);
    });
    clickAt({-5.0f, 0.0f, 0.0f});
    EXPECT_EQ(entries.size(), 2u);
    EXPECT_EQ(selection(), std::vector<osg::Node*>{over.get()});
    // The press that opened the menu gets its release back.
    osgGA::EventQueue::Events events;
    viewer.getEventQueue()->copyEvents(events);
    ASSERT_FALSE(events.empty());
    auto* last = events.back()->asGUIEventAdapter();
    ASSERT_TRUE(last);
    EXPECT_EQ(last->getEventType(), osgGA::GUIEventAdapter::RELEASE);
}

TEST_F(SelectTools, DismissedMenuOrRemovedObjectPicksNothing)
{
    osg::ref_ptr<iSnapTestGroup> over = square(-6.5f, -0.5f, -4.5f, 1.5f, 1.0f);
    ASSERT_TRUE(viewer.paintFrame());
    layer->addObjectSelection(b.get());
    int previewed = 0;
    onMenu([&](QMenu* menu) {
        // Hovering previews the entry as selected, and nobody is told.
        menu->setActiveAction(menu->actions().front());
        previewed = layer->getSelectionCount();
        menu->close();
    });
    clickAt({-5.0f, 0.0f, 0.0f}, 1);
    EXPECT_EQ(previewed, 2);
    EXPECT_EQ(selection(), std::vector<osg::Node*>{b.get()});

    onMenu([&](QMenu* menu) {
        QAction* action = menu->actions().front();
        auto* parent = reinterpret_cast<osg::Node*>(action->property("_parent").toLongLong());
        layer->removeObject(parent, true);
        choose(menu, action);
    });
    clickAt({-5.0f, 0.0f, 0.0f}, 1);
    EXPECT_EQ(selection(), std::vector<osg::Node*>{b.get()});
}

TEST_F(SelectTools, BandSelectsInsideRightwardsAndCrossingLeftwards)
{
    osg::Vec2f const left = pixel({-7.0f, -3.0f, 0.0f});
    osg::Vec2f const middle = pixel({3.0f, 3.0f, 0.0f});
    osg::Vec2f const between = (left + middle) * 0.5f;
    select->setKeyModifiers(0);
    select->start();
    select->click(pointAt(select, left));
    select->move(pointAt(select, between));
    ASSERT_EQ(manager.getCurrentInteractor()->getClassName(), std::string("iSelectWindowIA"));
    auto* band = static_cast<iSelectWindowIA*>(manager.getCurrentInteractor());
    EXPECT_TRUE(band->getBand().isShownIn(&viewer));
    band->move(pointAt(band, middle));
    band->release(pointAt(band, middle));
    EXPECT_FALSE(band->getBand().isShownIn(&viewer));
    EXPECT_EQ(selection(), std::vector<osg::Node*>{a.get()});
    manager.loop();
    ASSERT_EQ(manager.getCurrentInteractor(), select);

    select->start();
    select->click(pointAt(select, middle));
    select->move(pointAt(select, between));
    auto* crossing = static_cast<iSelectWindowIA*>(manager.getCurrentInteractor());
    ASSERT_NE(crossing, nullptr);
    ASSERT_NE(static_cast<iInteractor*>(crossing), select);
    crossing->release(pointAt(crossing, left));
    EXPECT_EQ(crossing->getSelectionMode(), iSelectWindowIA::iSelectIntersection);
    EXPECT_EQ(selection().size(), 2u);
    manager.loop();
}

} // namespace
