#include "model/ModelTestSupport.h"

#include <iModelStage/model/iColor4iModelStage_viewerbgview.h>
#include <iModelStage/model/iGhostNode.h>
#include <iModelStage/model/iSettingsManagerBase.h>
#include <iModelStage/model/iSettingsManagerNotifierLock.h>

namespace {

typedef iColor4iModelStage_viewerbgview Background;

osg::Vec4f const kDefault(0.24313725f, 0.29019609f, 0.38431373f, 1.0f);

// Id, then a settings layer body: the background setting (levels node,
// setting base, colour) and a record of a class nobody has.
std::string settingsFile(std::string const& id, osg::Vec4f const& colour)
{
    std::string object = str("iColor4iModelStage_viewerbgview") + ints({1, 1, 1});
    object += i32(900300) + str("iModelStage_viewerbg") + i32(-1) + str("");
    for (int i = 0; i < 4; ++i)
        object += f64(colour[i]);
    object += i32(0); // no parents
    std::string const foreign = str("iUnknownSettingview") + str(str("opaque") + i32(3));
    return str(id) + i32(2) + str("iColor4iModelStage_viewerbgview") + str(object) + foreign +
           i32(0) + i32(0); // no proxies, no selection
}

Background* background()
{
    return dynamic_cast<Background*>(iSettingsManagerBase::getSettingsLayer()->findObjectByName("iModelStage_viewerbg"));
}

NodeList ghosts() { return ghostsOf(iSettingsManagerBase::getSettingsLayer()); }

iProperty const& colourProperty()
{
    return Background::getClassStatic().getProperty("iModelStage_viewerbg", true);
}

} // namespace

class Settings : public testing::Test {
protected:
    void SetUp() override
    {
        events.listen(colourProperty().sigChanged, "changed");
        events.listen(colourProperty().sigPropertyChanged, "property");
    }
    void TearDown() override
    {
        for (osg::ref_ptr<osg::Node> const& ghost : ghosts())
            iSettingsManagerBase::getSettingsLayer()->removeObject(ghost.get(), true);
        iSettingsManagerBase::restoreDefaultValues();
    }
    Recorder events;
    TempFiles files;
};

TEST_F(Settings, SecondSettingOfANameIsRefused)
{
    Background* original = background();
    ASSERT_NE(original, nullptr);
    osg::ref_ptr<Background> twin = new Background;
    EXPECT_FALSE(iSettingsManagerBase::addNewPropertyObject(twin.get()));
    EXPECT_EQ(background(), original);

    twin->set_name("iTwinSetting");
    EXPECT_TRUE(iSettingsManagerBase::addNewPropertyObject(twin.get()));
    iSettingsManagerBase::removePropertyObject(twin.get());
    EXPECT_EQ(iSettingsManagerBase::getSettingsLayer()->findObjectByName("iTwinSetting"), nullptr);
}

TEST_F(Settings, ReadReplacesTheSettingAndKeepsUnknownOnesAsGhosts)
{
    Background* original = background();
    osg::Vec4f const value(0.5f, 0.25f, 0.125f, 1.0f);
    std::string const file = settingsFile("iSettingsManager::12122011", value);
    std::string const in = files.write("in", file);
    ASSERT_TRUE(iSettingsManagerBase::read(in.c_str()));

    Background* now = background();
    ASSERT_NE(now, nullptr);
    EXPECT_NE(now, original);
    EXPECT_EQ(now->get_iModelStage_viewerbg(), value);
    EXPECT_EQ(now->getDefaultValue(), kDefault);
    NodeList found = ghosts();
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(static_cast<iGhostNode*>(found[0].get())->getOriginalClassName(), "iUnknownSettingview");

    std::string const out = files.path("out");
    ASSERT_TRUE(iSettingsManagerBase::write(out.c_str()));
    EXPECT_EQ(readFile(out), file);

    // Ghosts of an earlier read do not pile up.
    ASSERT_TRUE(iSettingsManagerBase::read(in.c_str()));
    EXPECT_EQ(ghosts().size(), 1u);
}

TEST_F(Settings, FileOfAnotherDateIsRefused)
{
    iSettingsManagerBase::restoreDefaultValues();
    Background* original = background();
    std::string const in = files.write("date", settingsFile("iSettingsManager::12122012", osg::Vec4f(0.5f, 0.5f, 0.5f, 1)));
    EXPECT_FALSE(iSettingsManagerBase::read(in.c_str()));
    EXPECT_FALSE(iSettingsManagerBase::read(files.path("absent").c_str()));
    EXPECT_EQ(background(), original);
    EXPECT_EQ(original->get_iModelStage_viewerbg(), kDefault);
    EXPECT_TRUE(ghosts().empty());
}

TEST_F(Settings, RestoreDefaultsNotifiesUnlessANotifierLockLives)
{
    // Even when the value is the default already.
    iSettingsManagerBase::restoreDefaultValues();
    ASSERT_EQ(background()->get_iModelStage_viewerbg(), kDefault);
    events.take();
    iSettingsManagerBase::restoreDefaultValues();
    Log const notified{"property", "changed"};
    EXPECT_EQ(events.take(), notified);
    {
        iSettingsManagerNotifierLock lock("iModelStage_viewerbg");
        iSettingsManagerNotifierLock unknown("iNoSuchSetting");
        background()->set_iModelStage_viewerbg(osg::Vec4f(1, 0, 0, 1));
        iSettingsManagerBase::restoreDefaultValues();
        // The property still reports; only the setting's notice is silenced.
        Log const locked = events.take();
        EXPECT_FALSE(locked.empty());
        EXPECT_EQ(std::count(locked.begin(), locked.end(), "changed"), 0);
    }
    EXPECT_TRUE(events.take().empty());
    iSettingsManagerBase::restoreDefaultValues();
    EXPECT_EQ(events.take(), notified);
}
