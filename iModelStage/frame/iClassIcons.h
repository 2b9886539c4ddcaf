#ifndef IMODELSTAGE_FRAME_ICLASSICONS_H
#define IMODELSTAGE_FRAME_ICLASSICONS_H

#include <iModelStage/frame/iExport.h>

#include <QMap>
#include <QString>

// Process-wide icons of classes, and the virtual root items an application
// shows in its object browser, both keyed by class name.

// Inserts or overwrites.
IMODELSTAGE_EXPORT void iAddClassIcon(QString const& className, QString const& icon);
// Finds or inserts the key, then assigns.
IMODELSTAGE_EXPORT void iOverrideClassIcon(QString const& className, QString const& icon);
// Finds or inserts the key (an unknown class leaves an empty entry) and
// returns its value.
IMODELSTAGE_EXPORT QString iGetClassIcon(QString const& className);
IMODELSTAGE_EXPORT QMap<QString, QString> const& iGetClassIconsMap();

IMODELSTAGE_EXPORT void iAddVirtualRootItemClass(QString const& key, QString const& value);
IMODELSTAGE_EXPORT QMap<QString, QString> const& iGetVirtualItemMap();

#endif
