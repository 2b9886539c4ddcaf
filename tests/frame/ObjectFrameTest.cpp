#include "frame/FrameTestSupport.h"

#include <iModelStage/frame/TypeMismatchError.h>
#include <iModelStage/frame/UnknownPropertyError.h>
#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iMemoryBuffer.h>
#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/frame/iOutStream.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <sstream>
#include <utility>

namespace {

class tFrameProbe : public iRoot {
    I_CLASS(tFrameProbe, iRoot, 3)
    I_PROPERTY(double, width)
    I_PROPERTY(int, count)

    void read(iInStream& in, int version)
    {
        readVersion = version;
        _count = in.readInt();
        _width = in.readDouble();
    }
    void write(iOutStream& out)
    {
        out.writeInt(_count);
        out.writeDouble(_width);
    }
    int readVersion = 0;
};

class tFrameProbeChild : public tFrameProbe {
    I_CLASS(tFrameProbeChild, tFrameProbe, 2)

    // Base first: the level above has been read already.
    void read(iInStream& in, int version)
    {
        childVersion = readVersion != 0 ? version : -1;
        flag = in.readBool();
    }
    void write(iOutStream& out) { out.writeBool(flag); }
    bool flag = false;
    int childVersion = 0;
};

I_REGISTER_PERSISTENT_CLASS(tFrameProbe)
I_REGISTER_PROPERTY(tFrameProbe, double, width, "Geometry")
I_REGISTER_PROPERTY(tFrameProbe, int, count, "Geometry")
I_REGISTER_PERSISTENT_CLASS(tFrameProbeChild)

iProperty const& widthRecord() { return tFrameProbe::getClassStatic().getProperty("width", true); }

std::string num(double v)
{
    std::ostringstream text;
    text << v;
    return text.str();
}

// Logs every step of a set of "width" with the value stored at that moment,
// so that both the order and the moment of the store show.
struct SetterLog : iSlot {
    explicit SetterLog(tFrameProbe& probe) : probe(probe)
    {
        probe.sigwidthChanging.connect(this, &SetterLog::changing);
        probe.sigwidthChanged.connect(this, &SetterLog::changed);
        probe.sigPropertyChanged.connect(this, &SetterLog::property);
        widthRecord().sigPropertyChanged.connect(this, &SetterLog::record);
        widthRecord().sigObjectChanged.connect(this, &SetterLog::object);
    }
    void add(iRoot* source, std::string const& what)
    {
        EXPECT_EQ(source, &probe);
        steps.push_back(what + "@" + num(probe.get_width()));
    }
    void changing(iRoot* s, double v) { add(s, "changing " + num(v)); }
    void changed(iRoot* s, double v) { add(s, "changed " + num(v)); }
    void property(iRoot* s, char const* name) { add(s, std::string("property ") + name); }
    void record(iRoot* s, iProperty const* p) { add(s, std::string("record ") + p->getName()); }
    void object(iRoot* s) { add(s, "object"); }
    std::vector<std::string> take() { return std::exchange(steps, {}); }

    tFrameProbe& probe;
    std::vector<std::string> steps;
};

std::vector<std::string> fullSet(double before, double after)
{
    std::string const v = num(after);
    return {"changing " + v + "@" + num(before), "changed " + v + "@" + v, "property width@" + v,
            "record width@" + v, "object@" + v};
}

// Force-set lives on the shared record: put it back whatever happens.
struct ForceSet {
    explicit ForceSet(bool on) : previous(widthRecord().getForceSet()) { widthRecord().setForceSet(on); }
    ~ForceSet() { widthRecord().setForceSet(previous); }
    bool previous;
};

std::string childBytes(int baseVersion, int childVersion)
{
    return str("tFrameProbeChild") + i32(2) + i32(baseVersion) + i32(childVersion) + i32(0x12345) + str("box") +
           i32(-7) + f64(0.5) + "\x01";
}

void readInto(iRoot* object, std::string const& bytes)
{
    iMemoryBuffer buffer(bytes);
    iInStream in(&buffer);
    iRoot::readObject(object, in);
}

} // namespace

TEST(PropertySetterTest, EmitsTheSequenceOnChangeOrWhenForcedOrNan)
{
    tFrameProbe probe, other;
    SetterLog log(probe);
    probe.set_width(2.0);
    EXPECT_EQ(log.take(), fullSet(0, 2));
    probe.set_width(2.0);
    EXPECT_TRUE(log.take().empty());
    // The connectable overload ignores its source; the generic path runs the same setter.
    probe.set_width(&other, 3.0);
    EXPECT_EQ(log.take(), fullSet(2, 3));
    probe.setPropertyValue<double>("width", 4.0);
    EXPECT_EQ(log.take(), fullSet(3, 4));
    // Another property names itself and leaves width's record quiet.
    probe.set_count(5);
    EXPECT_EQ(log.take(), std::vector<std::string>{"property count@4"});

    // Force-set and NaN run the whole sequence even without a change.
    {
        ForceSet force(true);
        probe.set_width(4.0);
        EXPECT_EQ(log.take(), fullSet(4, 4));
    }
    probe.set_width(4.0);
    EXPECT_TRUE(log.take().empty());
    double const nan = std::numeric_limits<double>::quiet_NaN();
    probe.set_width(nan);
    EXPECT_EQ(log.take(), fullSet(4, nan));
    probe.set_width(nan);
    EXPECT_EQ(log.take(), fullSet(nan, nan));
}

TEST(PropertyAccessTest, TypedAccessAndItsErrors)
{
    tFrameProbe probe;
    probe.setPropertyValue<int>("count", 7);
    EXPECT_EQ(probe.get_count(), 7);
    widthRecord().set<double>(&probe, 6.0);
    EXPECT_EQ(probe.getPropertyValue<double>("width"), 6.0);
    EXPECT_EQ(widthRecord().get<double>(&probe), 6.0);
    // Found through the parent only.
    tFrameProbeChild child;
    child.setPropertyValue<double>("width", 1.25);
    EXPECT_EQ(child.get_width(), 1.25);
    EXPECT_EQ(tFrameProbeChild::getClassStatic().findProperty("width", false), nullptr);

    auto mismatch = [](auto&& call) {
        try {
            call();
        } catch (TypeMismatchError const& e) {
            return std::string(e.what());
        }
        return std::string("no throw");
    };
    EXPECT_EQ(mismatch([&] { probe.getPropertyValue<int>("width"); }), "width");
    EXPECT_EQ(mismatch([&] { probe.setPropertyValue<float>("width", 1.0f); }), "width");
    EXPECT_EQ(probe.get_width(), 6.0);
    iRoot stranger;
    EXPECT_EQ(mismatch([&] { widthRecord().get<double>(&stranger); }), "object");
    EXPECT_EQ(mismatch([&] { widthRecord().set<double>(&stranger, 1.0); }), "object");
    EXPECT_THROW(probe.getPropertyValue<double>("nosuch"), UnknownPropertyError);
    EXPECT_THROW(stranger.setPropertyValue<double>("width", 1.0), UnknownPropertyError);
}

TEST(ClassTableTest, CreatesAndDescribesClassesByNameWithAliasesAndInfo)
{
    std::unique_ptr<iRoot> made(iRoot::newClass("tFrameProbeChild"));
    EXPECT_NE(dynamic_cast<tFrameProbeChild*>(made.get()), nullptr);
    EXPECT_EQ(iRoot::newClass("tNoSuchClass"), nullptr);
    EXPECT_TRUE(iRoot::findClass("tFrameProbe"));
    EXPECT_FALSE(iRoot::findClass("tNoSuchClass"));

    EXPECT_TRUE(iRoot::isClassOf("tFrameProbeChild", "tFrameProbeChild"));
    EXPECT_TRUE(iRoot::isClassOf("tFrameProbeChild", "iRoot"));
    EXPECT_TRUE(iRoot::isClassOf("iGhostLayer", "iBaseModel"));
    EXPECT_FALSE(iRoot::isClassOf("tFrameProbe", "tFrameProbeChild"));
    EXPECT_FALSE(iRoot::isClassOf("tNoSuchClass", "iRoot"));

    std::string parent;
    EXPECT_TRUE(iRoot::getParentClassName("tFrameProbeChild", parent));
    EXPECT_EQ(parent, "tFrameProbe");
    EXPECT_TRUE(iRoot::getParentClassName("tFrameProbe", parent));
    EXPECT_EQ(parent, "iRoot");
    EXPECT_FALSE(iRoot::getParentClassName("iRoot", parent));
    EXPECT_FALSE(iRoot::getParentClassName("tNoSuchClass", parent));

    std::set<std::string> children;
    EXPECT_TRUE(iRoot::getChildrenClassesList("tFrameProbe", children));
    EXPECT_EQ(children, (std::set<std::string>{"tFrameProbeChild"}));
    EXPECT_TRUE(iRoot::getChildrenClassesList("tFrameProbe", children, true));
    EXPECT_EQ(children, (std::set<std::string>{"tFrameProbe", "tFrameProbeChild"}));
    children.clear();
    EXPECT_FALSE(iRoot::getChildrenClassesList("tNoSuchClass", children, true));
    EXPECT_TRUE(children.empty());
    EXPECT_EQ(iClass::forType(typeid(tFrameProbeChild)), &tFrameProbeChild::getClassStatic());

    std::string alias;
    EXPECT_FALSE(iRoot::getClassAlias("tFrameProbeChild", alias));
    EXPECT_EQ(alias, "tFrameProbeChild");
    iRoot::setClassAlias("tFrameProbe", "Sonda");
    EXPECT_EQ(tFrameProbe().getClassAlias(), "Sonda");
    EXPECT_EQ(tFrameProbeChild().getClassAlias(), "tFrameProbeChild");

    // Neither class nor property need be registered.
    iRoot::setPropertyInfo("tNoSuchClass", "nosuch", "Etichetta", "Categoria", "Suggerimento", "x1", "x2");
    std::string label, category, hint, extra1, extra2;
    ASSERT_TRUE(iRoot::getPropertyInfo("tNoSuchClass", "nosuch", label, category, hint, extra1, extra2));
    EXPECT_EQ(label + "|" + category + "|" + hint + "|" + extra1 + "|" + extra2,
              "Etichetta|Categoria|Suggerimento|x1|x2");
    EXPECT_FALSE(iRoot::getPropertyInfo("tFrameProbe", "width", label, category, hint));
}

TEST(UniqueIdTest, GeneratedIdsAreNeverHeldByLiveObjects)
{
    std::vector<std::unique_ptr<iRoot>> live;
    std::set<long> held;
    for (int i = 0; i < 10; ++i) {
        live.emplace_back(new iRoot);
        EXPECT_TRUE(held.insert(live.back()->getUniqueId()).second);
    }
    // Occupy the ids that would come next, the first also through a copy
    // that ends while its source lives on.
    long const next = iRoot::generateUniqueId(0);
    for (int i = 0; i < 5; ++i) {
        held.erase(live[i]->getUniqueId());
        live[i]->setUniqueId(next + 1 + i);
        held.insert(next + 1 + i);
    }
    delete new iRoot(*live[0]);
    for (int i = 0; i < 10; ++i) {
        long id = iRoot::generateUniqueId(0);
        EXPECT_EQ(held.count(id), 0u) << "held by a live object: " << id;
        EXPECT_TRUE(id >= 1 && id <= 0x7fffffffL) << id;
    }
}

TEST(UniqueIdTest, CopyKeepsIdAndNameButNoConnections)
{
    tFrameProbe source;
    SetterLog log(source);
    // The source also listens, through its connectable setter.
    iRoot leader;
    leader.sigNameChanged.connect(&source, static_cast<void (iRoot::*)(iRoot*, std::string)>(&iRoot::set_name));
    source.set_name("origine");

    tFrameProbe copy(source);
    EXPECT_EQ(copy.getUniqueId(), source.getUniqueId());
    EXPECT_EQ(copy.get_name(), "origine");
    leader.set_name("capo");
    EXPECT_EQ(source.get_name(), "capo");
    EXPECT_EQ(copy.get_name(), "origine");
    copy.set_count(3);
    EXPECT_TRUE(log.take().empty());
}

TEST(ObjectStreamTest, WritesHeaderRootLevelThenLevelsBaseFirst)
{
    tFrameProbeChild object;
    object.setUniqueId(0x12345);
    object.set_name("box");
    object.set_count(-7);
    object.set_width(0.5);
    object.flag = true;
    iMemoryBuffer buffer;
    iOutStream out(&buffer);
    iRoot::writeObject(&object, out);
    EXPECT_EQ(buffer.str(), childBytes(3, 2));

    // Stored versions pair with the levels by position from the top.
    iMemoryBuffer stored(childBytes(1, 5));
    iInStream in(&stored);
    std::string className;
    iRoot::readObjectHeader(in, className);
    EXPECT_EQ(className, "tFrameProbeChild");
    in.seekg(0);
    tFrameProbeChild copy;
    iRoot::readObject(&copy, in);
    EXPECT_EQ(copy.getUniqueId(), 0x12345);
    EXPECT_EQ(copy.get_name(), "box");
    EXPECT_EQ(copy.get_count(), -7);
    EXPECT_EQ(copy.get_width(), 0.5);
    EXPECT_TRUE(copy.flag);
    EXPECT_EQ(copy.readVersion, 1);
    EXPECT_EQ(copy.childVersion, 5);
}

TEST(ObjectStreamTest, MismatchedOrTruncatedObjectsThrow)
{
    // Level counts other than the chain's, either way round.
    std::string const base = str("tFrameProbe") + i32(1) + i32(3) + i32(1) + str("") + i32(0) + f64(0);
    tFrameProbe probe;
    tFrameProbeChild child;
    EXPECT_NO_THROW(readInto(&probe, base));
    EXPECT_THROW(readInto(&child, base), std::exception);
    EXPECT_THROW(readInto(&probe, childBytes(3, 2)), std::exception);
    // Every proper prefix of a good object is short somewhere.
    std::string const good = childBytes(3, 2);
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_THROW(readInto(&child, good.substr(0, size)), std::exception) << "prefix of " << size << " bytes";
    EXPECT_THROW(readInto(&child, i32(2000000000) + "tFrame"), std::exception);
}
