#include <iModelStage/model/iColor4iModelStage_viewerbgview.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/model/iSettingsManagerBase.h>

I_DEFINE_SETTING(iColor4, iModelStage_viewerbg, view,
                 iColor4(0.24313725f, 0.29019609f, 0.38431373f, 1.0f),
                 "Colore di sfondo", "Vista grafica", "Colore di sfondo della vista grafica")

namespace {

// The library's own instance, made at load: the reference held here keeps
// it alive whatever the settings layer does with it.
osg::ref_ptr<iColor4iModelStage_viewerbgview> const backgroundSetting = new iColor4iModelStage_viewerbgview;

} // namespace
