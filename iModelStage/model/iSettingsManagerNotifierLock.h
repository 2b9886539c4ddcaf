#ifndef IMODELSTAGE_MODEL_ISETTINGSMANAGERNOTIFIERLOCK_H
#define IMODELSTAGE_MODEL_ISETTINGSMANAGERNOTIFIERLOCK_H

#include <iModelStage/frame/iExport.h>

#include <string>

// Silences a setting's change notification for its lifetime, so that a
// batch of changes does not notify; nothing is emitted on release.
class IMODELSTAGE_EXPORT iSettingsManagerNotifierLock {
public:
    explicit iSettingsManagerNotifierLock(char const* settingName);
    ~iSettingsManagerNotifierLock();
    iSettingsManagerNotifierLock(iSettingsManagerNotifierLock const&) = delete;
    iSettingsManagerNotifierLock& operator=(iSettingsManagerNotifierLock const&) = delete;

private:
    std::string _settingName;
    bool _saved = false;
};

#endif
