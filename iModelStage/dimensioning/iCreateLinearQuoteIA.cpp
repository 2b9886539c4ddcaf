#include <iModelStage/dimensioning/iCreateLinearQuoteIA.h>

#include <iModelStage/dimensioning/iQuoteHandOver.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iCreateLinearQuoteIA)
I_REGISTER_PROPERTY(iCreateLinearQuoteIA, bool, fliptext, "None")
I_REGISTER_PROPERTY(iCreateLinearQuoteIA, double, textoffset, "None")
I_REGISTER_PROPERTY(iCreateLinearQuoteIA, double, extlineoffset, "None")
I_REGISTER_PROPERTY(iCreateLinearQuoteIA, double, charsize, "None")

iCreateLinearQuoteIA::iCreateLinearQuoteIA()
{
    _textoffset = 0.0;
    _extlineoffset = 0.005;
    _charsize = 0.3;
    _fliptext = false;
    setNumSteps(3);
    for (char const* prompt :
         {"Inserire il primo punto", "Inserire il secondo punto", "Posizione linea di quota", "Quota inserita"})
        addStep(QString::fromUtf8(iTranslate(prompt)), iIATypeVec3, osg::Vec3f());
}

iCreateLinearQuoteIA::~iCreateLinearQuoteIA()
{
    disconnectQuote();
}

void iCreateLinearQuoteIA::disconnectQuote()
{
    if (!_quote.valid())
        return;
    sigtextoffsetChanged.disconnect(_quote.get());
    sigextlineoffsetChanged.disconnect(_quote.get());
    sigfliptextChanged.disconnect(_quote.get());
    sigcharsizeChanged.disconnect(_quote.get());
}

void iCreateLinearQuoteIA::start()
{
    iInteractor::start();
    if (_quote.valid())
        return;
    _quote = new iLinearQuote;
    _quote->set_offset(0.0);
    _quote->set_textoffset(_textoffset);
    _quote->set_extlineoffset(_extlineoffset);
    _quote->set_charsize(_charsize);
    _quote->set_fliptext(_fliptext);
    sigtextoffsetChanged.connect(_quote.get(), &iLinearQuote::set_textoffset);
    sigextlineoffsetChanged.connect(_quote.get(), &iLinearQuote::set_extlineoffset);
    sigfliptextChanged.connect(_quote.get(), &iLinearQuote::set_fliptext);
    sigcharsizeChanged.connect(static_cast<iBaseQuote*>(_quote.get()), &iBaseQuote::set_charsize);
}

bool iCreateLinearQuoteIA::release(iIAPoint const& p)
{
    if (getCurrentStep() == 1) {
        float const d = (p.getLocalPos() - getLastReleasedPos().getLocalPos()).length();
        if (d < MinimumLength) {
            emitMessage(QString::fromUtf8(
                            iTranslate("Impossibile creare la quota, lunghezza inferiore al minimo consentito")),
                        iIAMessageError);
            return true;
        }
    }
    bool const result = iInteractor::release(p);
    if (getCurrentStep() == 1 && _quote.valid()) {
        _quote->setStartPoint(p.getGlobalPos());
        _quote->setEndPoint(p.getGlobalPos());
        _quote->set_offset(0.0);
        getILayer()->addChild(_quote.get());
        _quote->updateGeometry(false);
    }
    return result;
}

bool iCreateLinearQuoteIA::move(iIAPoint const& p)
{
    bool const result = iInteractor::move(p);
    if (!_quote.valid())
        return result;
    if (getCurrentStep() == 1) {
        iViewer* viewer = getViewer();
        iInputPlane* plane = viewer ? viewer->getIPlane() : nullptr;
        _quote->setNormal(plane ? plane->getNormal() : osg::Vec3f(0.0f, 0.0f, 1.0f));
        _quote->setEndPoint(p.getGlobalPos());
        _quote->updateGeometry(false);
    } else if (getCurrentStep() == 2) {
        osg::Vec3d const local = osg::Vec3d(p.getLocalPos()) * _quote->getInverseMatrix();
        _quote->set_offset(local.y());
        _quote->updateGeometry(false);
    }
    return result;
}

void iCreateLinearQuoteIA::goBack()
{
    if (_quote.valid()) {
        if (getCurrentStep() == 1)
            getILayer()->removeChild(_quote.get());
        else if (getCurrentStep() == 2)
            _quote->set_offset(0.0);
    }
    iInteractor::goBack();
}

void iCreateLinearQuoteIA::end()
{
    iInteractor::end();
    if (!_quote.valid())
        return;
    storeForUndo(getClassAlias());
    disconnectQuote();
    iQuoteHandOver::handOver(_quote.get(), getGeometricsLayer(), getILayer(), false);
    _quote = nullptr;
}
