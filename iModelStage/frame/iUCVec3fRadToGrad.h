#ifndef IMODELSTAGE_FRAME_IUCVEC3FRADTOGRAD_H
#define IMODELSTAGE_FRAME_IUCVEC3FRADTOGRAD_H

#include <iModelStage/frame/iUnitConverterItem.h>

// Three angles, an osg::Vec3f: stored in radians, shown in degrees.
class IMODELSTAGE_EXPORT iUCVec3fRadToGrad : public iUnitConverterItem {
    I_CLASS(iUCVec3fRadToGrad, iUnitConverterItem, 1)
public:
    bool convertTo(void* value) override;
    bool convertFrom(void* value) override;
    std::string getSymbol() override;
};

#endif
