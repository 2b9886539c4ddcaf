#pragma once

#include "shapes/wbCreateShapeIA.h"
#include "shapes/wbLabel.h"

#include <string>

// Places a label with one click; it follows the cursor until then. Its
// text and height are the tool's properties.
class wbCreateLabelIA : public wbCreateShapeIA {
    I_CLASS(wbCreateLabelIA, wbCreateShapeIA, 1)
    I_PROPERTY(std::string, text)
    I_PROPERTY(double, height)
public:
    wbCreateLabelIA();

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

protected:
    iGeometricGroup* newShape() override;
};
