#ifndef IMODELSTAGE_INTERACTION_IZOOMINTERACTIVEIA_H
#define IMODELSTAGE_INTERACTION_IZOOMINTERACTIVEIA_H

#include <iModelStage/interaction/iStackedInteractor.h>

// Zooms by dragging up (in) and down (out).
class IMODELSTAGE_EXPORT iZoomInteractiveIA : public iStackedInteractor {
    I_CLASS(iZoomInteractiveIA, iStackedInteractor, 1)
public:
    iZoomInteractiveIA();
    ~iZoomInteractiveIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
private:
    double _lastY = 1.0;
};

#endif
