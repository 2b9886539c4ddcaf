#pragma once

#include <iModelStage/reporting/iExceptionBlock.h>

#include <osg/Node>

class iBaseModel;

// A document check: one warning for every shape that has no extent, so
// that it cannot be seen or picked. The document is the data object of
// the check when that is a model; otherwise the geometrics layer of the
// document.
class wbZeroSizeCheck : public iExceptionBlock {
    I_CLASS(wbZeroSizeCheck, iExceptionBlock, 1)
public:
    static char const* const ItemId;

    wbZeroSizeCheck() = default;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void handleExceptions() override;
    std::string getTitle() override;

    // A box or cylinder with a nil dimension, a polyline whose vertices all
    // coincide, a label with no text or no height.
    static bool hasZeroSize(osg::Node* node);

private:
    iBaseModel* checkedModel() const;
};
