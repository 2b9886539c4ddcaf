#include <iModelStage/model/iSettingsManagerNotifierLock.h>

#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/model/iSettingNodeBase.h>
#include <iModelStage/model/iSettingsManagerBase.h>

namespace {

// The argument-free signal of the named setting's property, or null.
sigslot::signal0<>* notification(std::string const& name)
{
    iNodeGroup* object = iSettingsManagerBase::getSettingsLayer()->findObjectByName(name);
    iSettingNodeBase* setting = dynamic_cast<iSettingNodeBase*>(object);
    if (!setting)
        return nullptr;
    iProperty const* property = setting->getClass().findProperty(name.c_str(), true);
    return property ? &property->sigChanged : nullptr;
}

} // namespace

iSettingsManagerNotifierLock::iSettingsManagerNotifierLock(char const* settingName)
    : _settingName(settingName ? settingName : "")
{
    try {
        if (sigslot::signal0<>* signal = notification(_settingName))
            _saved = signal->block(true);
    } catch (...) {
    }
}

iSettingsManagerNotifierLock::~iSettingsManagerNotifierLock()
{
    try {
        if (sigslot::signal0<>* signal = notification(_settingName))
            signal->block(_saved);
    } catch (...) {
    }
}
