#ifndef IMODELSTAGE_INTERACTION_IZOOMWINDOWIA_H
#define IMODELSTAGE_INTERACTION_IZOOMWINDOWIA_H

#include <iModelStage/interaction/iStackedInteractor.h>
#include <iModelStage/interaction/iRubberBand.h>
// Zooms onto the rectangle dragged over the viewer.
class IMODELSTAGE_EXPORT iZoomWindowIA : public iStackedInteractor {
    I_CLASS(iZoomWindowIA, iStackedInteractor, 1)
public:
    iZoomWindowIA();
    ~iZoomWindowIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void cancel() override;

    iRubberBand const& getBand() const { return _band; }
    // The prompt, shared with the zoom in and out tools.
    static QString prompt();
private:
    iRubberBand _band;
};

#endif
