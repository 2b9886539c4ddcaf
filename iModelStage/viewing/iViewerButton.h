#ifndef IMODELSTAGE_VIEWING_IVIEWERBUTTON_H
#define IMODELSTAGE_VIEWING_IVIEWERBUTTON_H

#include <iModelStage/viewing/iViewerBaseButton.h>

// A plain press button: its action runs at release.
class IMODELSTAGE_EXPORT iViewerButton : public iViewerBaseButton {
public:
    iViewerButton(iViewer* viewer, QImage const& image) : iViewerBaseButton(viewer, image) { }

protected:
    ~iViewerButton() override = default;
};

#endif
