#pragma once

#include <iModelStage/interaction/iTranslate1DIA.h>

// Moves the selection along one axis of the first target's frame.
class wbAxisTranslateIA : public iTranslate1DIA {
    I_CLASS(wbAxisTranslateIA, iTranslate1DIA, 1)
public:
    wbAxisTranslateIA() = default;

    // 0, 1, 2 for X, Y, Z; other values are taken as X.
    void setAxis(int axis);
};
