#ifndef IMODELSTAGE_FRAME_IROOT_H
#define IMODELSTAGE_FRAME_IROOT_H

#include <iModelStage/frame/iClass.h>
#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iNullClass.h>
#include <iModelStage/frame/iProperty.h>
#include <iModelStage/frame/iSlot.h>
#include <iModelStage/frame/sigslot.h>

#include <set>
#include <string>
#include <vector>

class iInStream;
class iOutStream;

// Root of every frame class: class record, unique id, name, generic
// property-changed signal, and the process-wide class table through which
// objects are created, persisted and described by class name.
class IMODELSTAGE_EXPORT iRoot : public iSlot, public iNullClass {
public:
    class iRootMapItem;

    iRoot();
    // A copy holds the id and name of its source but none of its
    // connections: classes connect what they need in their own constructors.
    iRoot(iRoot const& other);
    iRoot& operator=(iRoot const& other);
    ~iRoot() override;

    virtual char const* getParentClassName() const { return ""; }
    virtual char const* getClassName() const { return "iRoot"; }
    virtual int getClassVersion() const { return 1; }
    virtual iClass const& getClass() const { return getClassStatic(); }

    static iClass const& getClassStatic() { return *getClassStaticPtr(); }
    static char const* staticGetClassName() { return "iRoot"; }

    // Unique ids lie within 1 to 2^31 - 1.
    long getUniqueId() const { return _uniqueId; }
    void setUniqueId(long id);
    // An id that no live object holds at the moment of the call.
    static long generateUniqueId(int hint);

    std::string get_name() const { return _name; }
    void set_name(std::string name);
    void set_name(iRoot*, std::string name) { set_name(std::move(name)); }

    // The alias of this object's class, or its class name.
    std::string getClassAlias() const;

    // Typed access to a registered property by name; see iProperty.
    template <class T>
    T getPropertyValue(char const* name) const
    {
        return getClass().getProperty(name, true).get<T>(this);
    }
    template <class T>
    void setPropertyValue(char const* name, T const& value)
    {
        getClass().getProperty(name, true).set<T>(this, value);
    }

    // Class table.
    static iRoot* newClass(char const* className);
    // The same for a reader that gives the object its stored id at once, as
    // readObject does: the object starts with the id 0, which no live object
    // holds, instead of taking a fresh id only to give it back.
    static iRoot* newClassToRead(char const* className);
    static bool findClass(char const* className);
    static bool isClassOf(char const* className, char const* baseName);
    static bool getParentClassName(char const* className, std::string& parent);
    // The version the class table holds for a class, 0 for an unknown one:
    // what writeObject stores, without making an object.
    static int getRegisteredClassVersion(char const* className);
    static bool getChildrenClassesList(char const* className, std::set<std::string>& children,
                                       bool includeSelf = false);
    static void getClassesList(std::vector<std::string>& classes);

    // User labels of classes; without one the class name stands in.
    static void setClassAlias(char const* className, std::string const& alias);
    static bool getClassAlias(char const* className, std::string& alias);

    // Display texts of properties. Classes and properties need not be
    // registered.
    static void setPropertyInfo(char const* className, char const* property, std::string const& label,
                                std::string const& category, std::string const& hint, std::string const& extra1,
                                std::string const& extra2);
    static bool getPropertyInfo(char const* className, char const* property, std::string& label,
                                std::string& category, std::string& hint);
    static bool getPropertyInfo(char const* className, char const* property, std::string& label,
                                std::string& category, std::string& hint, std::string& extra1, std::string& extra2);

    // Persistence: header (class name, level versions), the root level (id,
    // name), then each registered level of the object's chain, base first.
    static void writeObject(iRoot* object, iOutStream& stream);
    static void readObject(iRoot* object, iInStream& stream);
    static void readObjectHeader(iInStream& stream, std::string& className);
    static void readObjectHeader(iInStream& stream, std::string& className, std::vector<int>& versions);

    sigslot::signal2<iRoot*, std::string> sigNameChanged;
    sigslot::signal2<iRoot*, char const*> sigPropertyChanged;
    // Emitted by the destructor, while the object is being torn down.
    sigslot::signal1<iRoot*> sigDestroyed;

protected:
    static iClass const* getClassStaticPtr();

    virtual void initialize() {}

    // The sequence of every property set: compare, before-change signal,
    // store, after-change signal, the object's property-changed signal,
    // then the property record's two signals. Values compare with
    // operator!=, so a NaN always counts as a change.
    template <class T>
    void applyProperty(char const* name, T& store, T const& value, sigslot::signal2<iRoot*, T>& changing,
                       sigslot::signal2<iRoot*, T>& changed)
    {
        applyProperty(name, getClass().getProperty(name, true), store, value, changing, changed);
    }

    // The same with the property record already found.
    template <class T>
    void applyProperty(char const* name, iProperty const& property, T& store, T const& value,
                       sigslot::signal2<iRoot*, T>& changing, sigslot::signal2<iRoot*, T>& changed)
    {
        applyProperty(name, property, store, value, changing, changed, [](T const&) {});
    }

    // The same for a property whose own class reacts to it: the reaction
    // runs where a slot connected first to the after-change signal would,
    // and is skipped while that signal is blocked. An object reacting this
    // way instead of through a connection needs no connection state.
    template <class T, class Reaction>
    void applyProperty(char const* name, iProperty const& property, T& store, T const& value,
                       sigslot::signal2<iRoot*, T>& changing, sigslot::signal2<iRoot*, T>& changed,
                       Reaction const& react)
    {
        if (!(store != value) && !property.getForceSet())
            return;
        changing(this, value);
        store = value;
        if (!changed.blocked())
            react(value);
        changed(this, value);
        sigPropertyChanged(this, name);
        property.notifyChanged(this);
    }

    // The class's own reaction to a new name, run before sigNameChanged
    // reaches its receivers and skipped while that signal is blocked.
    virtual void nameChanged(std::string const&) {}

private:
    long _uniqueId;
    std::string _name;
};

// One row of the class table: a static registrar that enters a class with
// its parent, version, factory and level persistence, and removes it again
// when the library unloads.
class IMODELSTAGE_EXPORT iRoot::iRootMapItem {
public:
    typedef iRoot* (*Factory)();
    typedef void (iRoot::*ReadMember)(iInStream&, int);
    typedef void (iRoot::*WriteMember)(iOutStream&);
    typedef void (*ReadFunction)(iRoot*, iInStream&, int);
    typedef void (*WriteFunction)(iRoot*, iOutStream&);

    iRootMapItem(char const* className, char const* parentName, int version, Factory factory, ReadMember read,
                 WriteMember write);
    // Level functions that call the class's read and write non-virtually.
    iRootMapItem(char const* className, char const* parentName, int version, Factory factory, ReadFunction read,
                 WriteFunction write);
    ~iRootMapItem();
    iRootMapItem(iRootMapItem const&) = delete;
    iRootMapItem& operator=(iRootMapItem const&) = delete;

    char const* getClassName() const { return m_className; }
    char const* getParentName() const { return m_parentName; }
    int getVersion() const { return m_version; }
    Factory getFactory() const { return m_factory; }
    void read(iRoot* object, iInStream& stream, int version) const;
    void write(iRoot* object, iOutStream& stream) const;

private:
    void enter();

    char const* m_className;
    char const* m_parentName;
    int m_version;
    Factory m_factory;
    ReadMember m_readMember = nullptr;
    WriteMember m_writeMember = nullptr;
    ReadFunction m_readFunction = nullptr;
    WriteFunction m_writeFunction = nullptr;
};

#endif
