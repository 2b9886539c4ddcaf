#ifndef IMODELSTAGE_INTERACTION_ITRANSLATEIA_H
#define IMODELSTAGE_INTERACTION_ITRANSLATEIA_H

#include <iModelStage/interaction/iTransformIA.h>

// Moves the selection from one point to another, following the mouse.
class IMODELSTAGE_EXPORT iTranslateIA : public iTransformIA {
    I_CLASS(iTranslateIA, iTransformIA, 1)
public:
    iTranslateIA();
    ~iTranslateIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
private:

};

#endif
