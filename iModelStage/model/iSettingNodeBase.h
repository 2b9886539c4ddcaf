#ifndef IMODELSTAGE_MODEL_ISETTINGNODEBASE_H
#define IMODELSTAGE_MODEL_ISETTINGNODEBASE_H

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iStreamError.h>
#include <iModelStage/frame/iStreamHandler.h>
#include <iModelStage/model/iNodeGroup.h>

// An application setting: an object with one typed property of its own
// name, kept in the settings layer and persisted with it.
class IMODELSTAGE_EXPORT iSettingNodeBase : public iNodeGroup {
    I_CLASS(iSettingNodeBase, iNodeGroup, 1)
    I_OSG_NODE(iSettingNodeBase)
public:
    iSettingNodeBase() = default;
    iSettingNodeBase(iSettingNodeBase const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iNodeGroup(other, copyop)
    {
    }

    virtual void restoreDefaultValue() {}
    // Takes what the other setting of the same kind holds as its default.
    virtual void copyFrom(iSettingNodeBase*) {}

protected:
    ~iSettingNodeBase() override = default;

    // The argument-free signal of the named property: a setting's own
    // change notification.
    void notifyProperty(char const* property);
    // All three signals of the named property record.
    void emitPropertySignals(char const* property);
};

// A setting class named Type##Name##Group with the property Name of Type,
// stored through the stream handler of the type's frame name. The source
// file adds I_DEFINE_SETTING with the default value and the texts.
#define I_DECLARE_SETTING(Type, Name, Group)                                                                          \
    class IMODELSTAGE_EXPORT Type##Name##Group : public iSettingNodeBase {                                            \
        I_CLASS(Type##Name##Group, iSettingNodeBase, 1)                                                               \
        I_OSG_NODE(Type##Name##Group)                                                                                 \
        I_PROPERTY(Type, Name)                                                                                        \
    public:                                                                                                           \
        Type##Name##Group();                                                                                          \
        Type##Name##Group(Type##Name##Group const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)     \
            : iSettingNodeBase(other, copyop), _default(other._default)                                               \
        {                                                                                                             \
            _##Name = other._##Name;                                                                                  \
        }                                                                                                             \
        static Type defaultValue();                                                                                   \
        Type getDefaultValue() const { return _default; }                                                             \
        void restoreDefaultValue() override                                                                           \
        {                                                                                                             \
            getClass().getProperty(#Name, true).set<Type>(this, _default);                                            \
            emitPropertySignals(#Name);                                                                               \
        }                                                                                                             \
        void copyFrom(iSettingNodeBase* other) override                                                               \
        {                                                                                                             \
            if (auto* same = dynamic_cast<Type##Name##Group*>(other))                                                 \
                _default = same->_default;                                                                            \
        }                                                                                                             \
        void read(iInStream& stream, int)                                                                             \
        {                                                                                                             \
            iStreamHandler::ReadHandler handler = iStreamHandler::getReadHandler(#Type);                              \
            if (!handler)                                                                                             \
                throw iStreamError("no stream form for " #Type);                                                      \
            Type value{};                                                                                             \
            handler(stream, &value);                                                                                  \
            set_##Name(value);                                                                                        \
            notifyProperty(#Name);                                                                                    \
        }                                                                                                             \
        void write(iOutStream& stream)                                                                                \
        {                                                                                                             \
            iStreamHandler::WriteHandler handler = iStreamHandler::getWriteHandler(#Type);                            \
            if (!handler)                                                                                             \
                throw iStreamError("no stream form for " #Type);                                                      \
            handler(stream, &_##Name);                                                                                \
        }                                                                                                             \
                                                                                                                      \
    protected:                                                                                                        \
        ~Type##Name##Group() override = default;                                                                      \
                                                                                                                      \
    private:                                                                                                          \
        Type _default{};                                                                                              \
    };

// Registration and construction of a declared setting. The first
// construction enters the property's texts; every construction names the
// object, sets the default and offers the object to the settings layer,
// which keeps the first of each name.
#define I_DEFINE_SETTING(Type, Name, Group, DefaultValue, Label, Category, Hint)                                     \
    I_REGISTER_PERSISTENT_CLASS(Type##Name##Group)                                                                    \
    I_REGISTER_PROPERTY_AS(Type##Name##Group, Type, #Type, Name, #Group)                                              \
    Type Type##Name##Group::defaultValue() { return DefaultValue; }                                                   \
    Type##Name##Group::Type##Name##Group()                                                                            \
    {                                                                                                                 \
        static bool const described = [] {                                                                           \
            iRoot::setPropertyInfo(#Type #Name #Group, #Name, iTranslate(Label), iTranslate(Category),                 \
                                   iTranslate(Hint), iTranslate(Hint), "");                                           \
            return true;                                                                                              \
        }();                                                                                                          \
        (void)described;                                                                                              \
        set_name(#Name);                                                                                              \
        set_##Name(defaultValue());                                                                                   \
        _default = defaultValue();                                                                                    \
        iSettingsManagerBase::addNewPropertyObject(this);                                                             \
    }

#endif
