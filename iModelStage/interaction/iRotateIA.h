#ifndef IMODELSTAGE_INTERACTION_IROTATEIA_H
#define IMODELSTAGE_INTERACTION_IROTATEIA_H

#include <iModelStage/interaction/iTransformIA.h>

#include <osg/Geode>
// Turns the selection about the z axis of the input plane: an origin, a
// reference direction, then the angle.
class IMODELSTAGE_EXPORT iRotateIA : public iTransformIA {
    I_CLASS(iRotateIA, iTransformIA, 1)
public:
    iRotateIA();
    ~iRotateIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void goBack() override;
    void cancel() override;

protected:
    void init() override;
private:
    std::vector<osg::Matrixd> _angleStartMatrices;
    osg::Vec3f _origin;
    osg::Vec3f _reference;
    osg::ref_ptr<osg::Geode> _axisFeedback;
    osg::ref_ptr<osg::Geode> _angleFeedback;
};

#endif
