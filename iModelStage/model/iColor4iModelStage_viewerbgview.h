#ifndef IMODELSTAGE_MODEL_ICOLOR4IMODELSTAGE_VIEWERBGVIEW_H
#define IMODELSTAGE_MODEL_ICOLOR4IMODELSTAGE_VIEWERBGVIEW_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iSettingNodeBase.h>

// The background colour of the graphic views: the setting
// "iModelStage_viewerbg", opaque red 62, green 74, blue 98 by default.
I_DECLARE_SETTING(iColor4, iModelStage_viewerbg, view)

#endif
