#ifndef IMODELSTAGE_FRAME_IPROPERTYHANDLER_H
#define IMODELSTAGE_FRAME_IPROPERTYHANDLER_H

#include <iModelStage/frame/TypeMismatchError.h>
#include <iModelStage/frame/iExport.h>

#include <string>
#include <typeinfo>

class iClass;
class iRoot;

// Property handlers reach a property's getter and setter through member
// pointers. They are created once per registered property and live for the
// process.
class IMODELSTAGE_EXPORT __property_base__ {
public:
    explicit __property_base__(char const* name) : m_name(name) {}
    virtual ~__property_base__() = default;
    char const* getName() const { return m_name; }

private:
    char const* m_name;
};

template <class T>
class __property_handler__ : public __property_base__ {
public:
    using __property_base__::__property_base__;
    virtual T get(iRoot const* object) const = 0;
    virtual void set(iRoot* object, T value) const = 0;
};

template <class Class, class T>
class __property__ : public __property_handler__<T> {
public:
    typedef T (Class::*Getter)() const;
    typedef void (Class::*Setter)(T);

    __property__(char const* name, Getter getter, Setter setter)
        : __property_handler__<T>(name), m_getter(getter), m_setter(setter)
    {
    }

    T get(iRoot const* object) const override { return (cast(object)->*m_getter)(); }

    void set(iRoot* object, T value) const override
    {
        (const_cast<Class*>(cast(object))->*m_setter)(value);
    }

private:
    static Class const* cast(iRoot const* object)
    {
        Class const* typed = dynamic_cast<Class const*>(object);
        if (!typed)
            throw TypeMismatchError("object");
        return typed;
    }

    Getter m_getter;
    Setter m_setter;
};

// Static registrar: enters one property in its class record.
class IMODELSTAGE_EXPORT __register_property__ {
public:
    __register_property__(__property_base__* handler, iClass const* owner, char const* typeName,
                          char const* name, char const* group, std::type_info const& type);
};

#endif
