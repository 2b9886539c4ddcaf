#include <iModelStage/dimensioning/iCreatePointQuoteIA.h>

#include <iModelStage/dimensioning/iQuoteHandOver.h>
#include <iModelStage/frame/iTranslate.h>

#include <sstream>

I_REGISTER_CLASS(iCreatePointQuoteIA)

iCreatePointQuoteIA::iCreatePointQuoteIA()
{
    setNumSteps(1);
    setAllowConstructionLines(false);
    addStep(QString::fromUtf8(iTranslate("Cliccare per inserire la quota")), iIATypeVec3, osg::Vec3f());
    addStep(QString::fromUtf8(iTranslate("Quota inserita")), iIATypeVec3, osg::Vec3f());
}

iCreatePointQuoteIA::~iCreatePointQuoteIA() = default;

void iCreatePointQuoteIA::start()
{
    iInteractor::start();
    if (_quote.valid())
        return;
    _quote = new iPointQuote;
    getILayer()->addChild(_quote.get());
}

bool iCreatePointQuoteIA::move(iIAPoint const& p)
{
    bool const result = iInteractor::move(p);
    if (!_quote.valid())
        return result;
    osg::Vec3f const& local = p.getLocalPos();
    _quote->setPosition(local);
    std::ostringstream text;
    text << "(" << local.x() << ", " << local.y() << ", " << local.z() << ")";
    _quote->setText(text.str());
    _quote->updateGeometry(false);
    return result;
}

void iCreatePointQuoteIA::end()
{
    if (_quote.valid()) {
        storeForUndo(getClassAlias());
        // The flag stays in the feedback layer until the tool is popped.
        iQuoteHandOver::handOver(_quote.get(), getGeometricsLayer(), getILayer(), true);
        _quote = nullptr;
    }
    iInteractor::end();
}
