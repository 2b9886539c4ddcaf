#ifndef IMODELSTAGE_INTERACTION_ISCALEIA_H
#define IMODELSTAGE_INTERACTION_ISCALEIA_H

#include <iModelStage/interaction/iTransformIA.h>

#include <osg/Geode>
// Scales the selection in x and y about an origin; z is never scaled.
class IMODELSTAGE_EXPORT iScaleIA : public iTransformIA {
    I_CLASS(iScaleIA, iTransformIA, 1)
public:
    iScaleIA();
    ~iScaleIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void goBack() override;

protected:
    void init() override;
private:
    osg::ref_ptr<osg::Geode> _feedback;
};

#endif
