#ifndef IMODELSTAGE_INTERACTION_IZOOMINIA_H
#define IMODELSTAGE_INTERACTION_IZOOMINIA_H

#include <iModelStage/interaction/iStackedInteractor.h>
#include <osg/ref_ptr>
// Only reports its points: the application zooms from its signals.
class IMODELSTAGE_EXPORT iZoomInIA : public iStackedInteractor {
    I_CLASS(iZoomInIA, iStackedInteractor, 1)
public:
    iZoomInIA();
    ~iZoomInIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
private:
    osg::ref_ptr<osg::Referenced> _first;
    osg::ref_ptr<osg::Referenced> _second;
};

#endif
