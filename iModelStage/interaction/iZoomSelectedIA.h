#ifndef IMODELSTAGE_INTERACTION_IZOOMSELECTEDIA_H
#define IMODELSTAGE_INTERACTION_IZOOMSELECTEDIA_H

#include <iModelStage/interaction/iImmediateInteractor.h>

// Fits the selected objects in the view.
class IMODELSTAGE_EXPORT iZoomSelectedIA : public iImmediateInteractor {
    I_CLASS(iZoomSelectedIA, iImmediateInteractor, 1)
public:
    iZoomSelectedIA();
    ~iZoomSelectedIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void end() override;
};

#endif
