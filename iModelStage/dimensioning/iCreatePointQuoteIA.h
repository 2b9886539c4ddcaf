#ifndef IMODELSTAGE_DIMENSIONING_ICREATEPOINTQUOTEIA_H
#define IMODELSTAGE_DIMENSIONING_ICREATEPOINTQUOTEIA_H

#include <iModelStage/dimensioning/iPointQuote.h>
#include <iModelStage/interaction/iInteractor.h>

// One click places a flag with the coordinates of the point.
class IMODELSTAGE_EXPORT iCreatePointQuoteIA : public iInteractor {
    I_CLASS(iCreatePointQuoteIA, iInteractor, 1)
public:
    iCreatePointQuoteIA();
    ~iCreatePointQuoteIA() override;

    void start() override;
    bool move(iIAPoint const& p) override;
    void end() override;

    iPointQuote* getQuote() { return _quote.get(); }

private:
    osg::ref_ptr<iPointQuote> _quote;
};

#endif
