#ifndef IMODELSTAGE_INTERACTION_IROTATEVIEWIA_H
#define IMODELSTAGE_INTERACTION_IROTATEVIEWIA_H

#include <iModelStage/interaction/iStackedInteractor.h>

#include <osg/Quat>
#include <osg/Vec3f>
// Orbits the camera about the point it looks at while dragging.
class IMODELSTAGE_EXPORT iRotateViewIA : public iStackedInteractor {
    I_CLASS(iRotateViewIA, iStackedInteractor, 1)
public:
    iRotateViewIA();
    ~iRotateViewIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
private:
    osg::Quat _startRotation;
    osg::Vec3f _eye;
    osg::Vec3f _pivot;
};

#endif
