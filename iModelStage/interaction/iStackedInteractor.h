#ifndef IMODELSTAGE_INTERACTION_ISTACKEDINTERACTOR_H
#define IMODELSTAGE_INTERACTION_ISTACKEDINTERACTOR_H

#include <iModelStage/interaction/iInteractor.h>

// A tool that lies on top of another one without ending it, such as a
// zoom in the middle of a move; a second one of the same class is refused
// while the first is current.
class IMODELSTAGE_EXPORT iStackedInteractor : public iInteractor {
    I_CLASS(iStackedInteractor, iInteractor, 1)
public:
    iStackedInteractor();
    ~iStackedInteractor() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}
};

#endif
