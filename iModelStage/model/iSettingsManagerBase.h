#ifndef IMODELSTAGE_MODEL_ISETTINGSMANAGERBASE_H
#define IMODELSTAGE_MODEL_ISETTINGSMANAGERBASE_H

#include <iModelStage/frame/iExport.h>

class iNodeLayer;
class iSettingNodeBase;

// The application's settings: setting objects in a private layer outside
// the document, persisted in a file of their own. Settings of classes the
// program does not have survive as ghosts for as long as the layer lives.
class IMODELSTAGE_EXPORT iSettingsManagerBase {
public:
    // Identifies the settings file.
    static char const* const FileId;

    iSettingsManagerBase();

    static iNodeLayer* getSettingsLayer();
    // False when a setting of that name is there already.
    static bool addNewPropertyObject(iSettingNodeBase* setting);
    static void removePropertyObject(iSettingNodeBase* setting);
    static void restoreDefaultValues();
    // False, leaving the settings as they were, for a file that cannot be
    // read or is not a settings file. A setting read from the file replaces
    // the object of its name, keeping that object's default.
    static bool read(char const* fileName);
    static bool write(char const* fileName);

private:
    static void removeGhostNodes();
};

#endif
