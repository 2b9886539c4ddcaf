#include <iModelStage/dimensioning/iCreateLeaderIA.h>

#include <iModelStage/dimensioning/iQuoteHandOver.h>
#include <iModelStage/frame/iTranslate.h>

I_REGISTER_CLASS(iCreateLeaderIA)
I_REGISTER_PROPERTY(iCreateLeaderIA, bool, flip, "Geometry")
I_REGISTER_PROPERTY(iCreateLeaderIA, double, bleaderline, "Geometry")
I_REGISTER_PROPERTY(iCreateLeaderIA, double, hleaderline, "Geometry")
I_REGISTER_PROPERTY(iCreateLeaderIA, double, lenlandingline, "Geometry")
I_REGISTER_PROPERTY(iCreateLeaderIA, double, charsize, "Geometry")

iCreateLeaderIA::iCreateLeaderIA()
{
    _bleaderline = 0.5;
    _hleaderline = 0.5;
    _lenlandingline = 0.4;
    _flip = false;
    _charsize = 0.3;
    setNumSteps(1);
    addStep(QString::fromUtf8(iTranslate("Cliccare per definire il punto")), iIATypeVec3, osg::Vec3f());
    addStep(QString::fromUtf8(iTranslate("Direttrice inserita")), iIATypeVec3, osg::Vec3f());
}

iCreateLeaderIA::~iCreateLeaderIA()
{
    disconnectLeader();
}

void iCreateLeaderIA::disconnectLeader()
{
    if (!_leader.valid())
        return;
    sigbleaderlineChanged.disconnect(_leader.get());
    sighleaderlineChanged.disconnect(_leader.get());
    siglenlandinglineChanged.disconnect(_leader.get());
    sigflipChanged.disconnect(_leader.get());
    sigcharsizeChanged.disconnect(_leader.get());
}

void iCreateLeaderIA::start()
{
    iInteractor::start();
    if (_leader.valid())
        return;
    _leader = new iLeader;
    _leader->set_bleaderline(_bleaderline);
    _leader->set_hleaderline(_hleaderline);
    _leader->set_lenlandingline(_lenlandingline);
    _leader->set_flip(_flip);
    _leader->set_charsize(_charsize);
    sigbleaderlineChanged.connect(_leader.get(), &iLeader::set_bleaderline);
    sighleaderlineChanged.connect(_leader.get(), &iLeader::set_hleaderline);
    siglenlandinglineChanged.connect(_leader.get(), &iLeader::set_lenlandingline);
    sigflipChanged.connect(_leader.get(), &iLeader::set_flip);
    sigcharsizeChanged.connect(static_cast<iBaseQuote*>(_leader.get()), &iBaseQuote::set_charsize);
    getILayer()->addChild(_leader.get());
}

bool iCreateLeaderIA::move(iIAPoint const& p)
{
    bool const result = iInteractor::move(p);
    if (getCurrentStep() == 0 && _leader.valid()) {
        _leader->setPosition(p.getLocalPos());
        _leader->updateGeometry(false);
    }
    return result;
}

void iCreateLeaderIA::end()
{
    iInteractor::end();
    if (!_leader.valid())
        return;
    storeForUndo(getClassAlias());
    disconnectLeader();
    iQuoteHandOver::handOver(_leader.get(), getGeometricsLayer(), getILayer(), false);
    _leader = nullptr;
}
