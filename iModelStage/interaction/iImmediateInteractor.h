#ifndef IMODELSTAGE_INTERACTION_IIMMEDIATEINTERACTOR_H
#define IMODELSTAGE_INTERACTION_IIMMEDIATEINTERACTOR_H

#include <iModelStage/interaction/iInteractor.h>

// A tool that acts at once and never waits for input: the push runs its
// start and end and deletes it. It never lies on the stack.
class IMODELSTAGE_EXPORT iImmediateInteractor : public iInteractor {
    I_CLASS(iImmediateInteractor, iInteractor, 1)
public:
    iImmediateInteractor();
    ~iImmediateInteractor() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}
};

#endif
