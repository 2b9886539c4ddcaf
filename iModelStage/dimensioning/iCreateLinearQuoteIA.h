#ifndef IMODELSTAGE_DIMENSIONING_ICREATELINEARQUOTEIA_H
#define IMODELSTAGE_DIMENSIONING_ICREATELINEARQUOTEIA_H

#include <iModelStage/dimensioning/iLinearQuote.h>
#include <iModelStage/interaction/iInteractor.h>

// Three clicks make a linear quote: the two measured points, then the
// place of the dimension line. The quote hangs in the tool's feedback
// layer until the last click hands it to the document as one undo step.
class IMODELSTAGE_EXPORT iCreateLinearQuoteIA : public iInteractor {
    I_CLASS(iCreateLinearQuoteIA, iInteractor, 1)
    I_PROPERTY(double, textoffset)
    I_PROPERTY(double, extlineoffset)
    I_PROPERTY(double, charsize)
    I_PROPERTY(bool, fliptext)
public:
    // Points nearer than this do not make a quote.
    static constexpr double MinimumLength = 0.001;

    iCreateLinearQuoteIA();
    ~iCreateLinearQuoteIA() override;

    void goBack() override;
    void start() override;
    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void end() override;

    iLinearQuote* getQuote() { return _quote.get(); }

private:
    void disconnectQuote();

    osg::ref_ptr<iLinearQuote> _quote;
};

#endif
