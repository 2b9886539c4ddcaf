#ifndef IMODELSTAGE_INTERACTION_IPANIA_H
#define IMODELSTAGE_INTERACTION_IPANIA_H

#include <iModelStage/interaction/iStackedInteractor.h>

// Drags the view sideways with the mouse.
class IMODELSTAGE_EXPORT iPanIA : public iStackedInteractor {
    I_CLASS(iPanIA, iStackedInteractor, 1)
public:
    iPanIA();
    ~iPanIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
private:
    int _lastX = 0;
    int _lastY = 0;
};

#endif
