#ifndef IMODELSTAGE_DIMENSIONING_ICREATELEADERIA_H
#define IMODELSTAGE_DIMENSIONING_ICREATELEADERIA_H

#include <iModelStage/dimensioning/iLeader.h>
#include <iModelStage/interaction/iInteractor.h>

// One click places a leader; the tool's sizes are handed on to it, and
// follow later changes until it enters the document.
class IMODELSTAGE_EXPORT iCreateLeaderIA : public iInteractor {
    I_CLASS(iCreateLeaderIA, iInteractor, 1)
    I_PROPERTY(double, bleaderline)
    I_PROPERTY(double, hleaderline)
    I_PROPERTY(double, lenlandingline)
    I_PROPERTY(bool, flip)
    I_PROPERTY(double, charsize)
public:
    iCreateLeaderIA();
    ~iCreateLeaderIA() override;

    void start() override;
    bool move(iIAPoint const& p) override;
    void end() override;

    iLeader* getLeader() { return _leader.get(); }

private:
    void disconnectLeader();

    osg::ref_ptr<iLeader> _leader;
};

#endif
