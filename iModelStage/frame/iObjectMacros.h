#ifndef IMODELSTAGE_FRAME_IOBJECTMACROS_H
#define IMODELSTAGE_FRAME_IOBJECTMACROS_H

// The boilerplate of frame classes, written once.
//
// In the class body:
//
//     class iThing : public iNodeGroup {
//         I_CLASS(iThing, iNodeGroup, 1)
//         I_OSG_NODE(iThing)              // scene nodes only
//         I_PROPERTY(double, width)       // get_width, set_width, sigwidthChanging, sigwidthChanged
//     public:
//         ...
//     };
//
// In the source file:
//
//     I_REGISTER_PERSISTENT_CLASS(iThing)             // or I_REGISTER_CLASS, or I_DEFINE_CLASS
//     I_REGISTER_PROPERTY(iThing, double, width, "Geometry")
//
// Every macro used in a class body leaves the class in its public section.
//
// A persistent class's read(iInStream&, int) and write(iOutStream&) cover its
// own level only; the frame calls every level of an object's chain, base
// first, and calls each non-virtually.

#include <iModelStage/frame/iPropertyCache.h>
#include <iModelStage/frame/iPropertyHandler.h>
#include <iModelStage/frame/iRoot.h>

#include <type_traits>
#include <typeinfo>

class iInStream;
class iOutStream;

// Whether `new C` is well-formed: C is concrete, with an accessible default
// constructor. Scene classes keep their destructors protected, which rules
// out std::is_default_constructible.
template <class C, class = void>
struct iIsCreatable : std::false_type {};
template <class C>
struct iIsCreatable<C, std::void_t<decltype(new C)>> : std::true_type {};

// Factory and level functions of a class for its row in the class table.
template <class C>
struct iClassBinding {
    static iRoot* create() { return new C; }

    static iRoot::iRootMapItem::Factory factory()
    {
        if constexpr (!iIsCreatable<C>::value)
            return nullptr;
        else
            return &create;
    }

    static void read(iRoot* object, iInStream& stream, int version)
    {
        static_cast<C*>(object)->C::read(stream, version);
    }

    static void write(iRoot* object, iOutStream& stream) { static_cast<C*>(object)->C::write(stream); }

    static void* superCast(void* object) { return dynamic_cast<C*>(static_cast<iRoot*>(object)); }

    static void const* superCastConst(void const* object)
    {
        return dynamic_cast<C const*>(static_cast<iRoot const*>(object));
    }
};

// Class identity, version and record.
#define I_CLASS(Class, Parent, Version)                                                                               \
public:                                                                                                               \
    typedef Parent iParentClass;                                                                                      \
    static constexpr int iClassVersion = Version;                                                                     \
    static iClass const& getClassStatic() { return *getClassStaticPtr(); }                                            \
    iClass const& getClass() const override { return getClassStatic(); }                                             \
    char const* getClassName() const override { return #Class; }                                                      \
    static char const* staticGetClassName() { return #Class; }                                                        \
    char const* getParentClassName() const override { return #Parent; }                                               \
    static char const* staticGetParentClassName() { return #Parent; }                                                 \
    int getClassVersion() const override { return Version; }                                                          \
                                                                                                                      \
protected:                                                                                                            \
    static iClass const* getClassStaticPtr();                                                                         \
                                                                                                                      \
private:                                                                                                              \
    static void* __super_cast(void* object) { return iClassBinding<Class>::superCast(object); }                       \
    static void const* __super_cast_const(void const* object)                                                         \
    {                                                                                                                 \
        return iClassBinding<Class>::superCastConst(object);                                                          \
    }                                                                                                                 \
    friend struct iClassBinding<Class>;                                                                               \
                                                                                                                      \
public:

// Scene-graph meta operations of a class that is an osg::Object.
#define I_OSG_OBJECT(Class)                                                                                           \
public:                                                                                                               \
    osg::Object* cloneType() const override { return new Class(); }                                                   \
    osg::Object* clone(osg::CopyOp const& copyop) const override { return new Class(*this, copyop); }                 \
    bool isSameKindAs(osg::Object const* object) const override                                                       \
    {                                                                                                                 \
        return dynamic_cast<Class const*>(object) != nullptr;                                                         \
    }                                                                                                                 \
    char const* libraryName() const override { return "iModelStage"; }                                                \
    char const* className() const override { return #Class; }

// The same for scene nodes, with the visitor entry.
#define I_OSG_NODE(Class)                                                                                             \
    I_OSG_OBJECT(Class)                                                                                               \
    void accept(osg::NodeVisitor& visitor) override                                                                   \
    {                                                                                                                 \
        if (visitor.validNodeMask(*this)) {                                                                           \
            visitor.pushOntoNodePath(this);                                                                           \
            visitor.apply(*this);                                                                                     \
            visitor.popFromNodePath();                                                                                \
        }                                                                                                             \
    }

// A property: the member _name, get_name, set_name(T), set_name(iRoot*, T)
// for connecting to another object's signal, and the before and after
// signals signameChanging and signameChanged. A class that reacts declares
// its own slotnameChanged and connects it to signameChanged, or declares the
// property with I_PROPERTY_REACTING.
#define I_PROPERTY(Type, name) I_PROPERTY_SETTER(Type, name, )

// A property whose class reacts in slotnameChanged(iRoot*, T) without a
// connection: the setter calls the slot where a slot connected first would
// run, unless signameChanged is blocked or the class's ownReactions() says
// the object is not ready for them (a copy being built, say). Saves the
// connection state every object would otherwise carry.
#define I_PROPERTY_REACTING(Type, name)                                                                               \
    I_PROPERTY_SETTER(Type, name, , [this](Type const& v) {                                                           \
        if (ownReactions())                                                                                           \
            slot##name##Changed(this, v);                                                                             \
    })

#define I_PROPERTY_SETTER(Type, name, ...)                                                                            \
public:                                                                                                               \
    sigslot::signal2<iRoot*, Type> sig##name##Changing;                                                               \
    sigslot::signal2<iRoot*, Type> sig##name##Changed;                                                                \
    Type get_##name() const { return _##name; }                                                                       \
    void set_##name(Type value)                                                                                       \
    {                                                                                                                 \
        static char const* const key = iProperty::internName(#name);                                                  \
        static iPropertyCache cache;                                                                                  \
        applyProperty(key, cache.find(getClass(), key), _##name, value, sig##name##Changing,                          \
                      sig##name##Changed __VA_ARGS__);                                                                \
    }                                                                                                                 \
    void set_##name(iRoot*, Type value) { set_##name(value); }                                                        \
                                                                                                                      \
protected:                                                                                                            \
    Type _##name{};                                                                                                   \
                                                                                                                      \
public:

#define I_CONCAT_INNER(a, b) a##b
#define I_CONCAT(a, b) I_CONCAT_INNER(a, b)

// The class record alone, for frame classes without a row in the table.
#define I_DEFINE_CLASS(Class)                                                                                         \
    iClass const* Class::getClassStaticPtr()                                                                          \
    {                                                                                                                 \
        static iClass const record(#Class, Class::iParentClass::getClassStaticPtr(), sizeof(Class), nullptr,          \
                                   &Class::__super_cast, &Class::__super_cast_const, typeid(Class), typeid(Class),    \
                                   typeid(Class*), typeid(Class const*), typeid(void), typeid(void), typeid(void),    \
                                   typeid(void));                                                                     \
        return &record;                                                                                               \
    }

// Record and table row of a class that persists nothing of its own level.
#define I_REGISTER_CLASS(Class)                                                                                       \
    I_DEFINE_CLASS(Class)                                                                                             \
    static iRoot::iRootMapItem const I_CONCAT(iClassRow_, Class)(                                                     \
        #Class, Class::staticGetParentClassName(), Class::iClassVersion, iClassBinding<Class>::factory(),            \
        static_cast<iRoot::iRootMapItem::ReadFunction>(nullptr),                                                      \
        static_cast<iRoot::iRootMapItem::WriteFunction>(nullptr));

// Record and table row of a class with its own read and write.
#define I_REGISTER_PERSISTENT_CLASS(Class)                                                                            \
    I_DEFINE_CLASS(Class)                                                                                             \
    static iRoot::iRootMapItem const I_CONCAT(iClassRow_, Class)(#Class, Class::staticGetParentClassName(),          \
                                                                 Class::iClassVersion,                                \
                                                                 iClassBinding<Class>::factory(),                     \
                                                                 &iClassBinding<Class>::read,                         \
                                                                 &iClassBinding<Class>::write);

// A property of the class, with the frame's name of its type when that
// differs from the spelling of the C++ type.
#define I_REGISTER_PROPERTY_AS(Class, Type, TypeName, name, group)                                                    \
    static __register_property__ const I_CONCAT(iPropertyRow_##Class##_, name)(                                       \
        new __property__<Class, Type>(#name, &Class::get_##name,                                                      \
                                      static_cast<void (Class::*)(Type)>(&Class::set_##name)),                        \
        &Class::getClassStatic(), TypeName, #name, group, typeid(Type));

#define I_REGISTER_PROPERTY(Class, Type, name, group) I_REGISTER_PROPERTY_AS(Class, Type, #Type, name, group)

#endif
