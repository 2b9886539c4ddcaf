#ifndef IMODELSTAGE_INTERACTION_IZOOMALLIA_H
#define IMODELSTAGE_INTERACTION_IZOOMALLIA_H

#include <iModelStage/interaction/iImmediateInteractor.h>

// Fits the whole document in the view.
class IMODELSTAGE_EXPORT iZoomAllIA : public iImmediateInteractor {
    I_CLASS(iZoomAllIA, iImmediateInteractor, 1)
public:
    iZoomAllIA();
    ~iZoomAllIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void end() override;
};

#endif
