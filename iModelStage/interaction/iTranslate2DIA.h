#ifndef IMODELSTAGE_INTERACTION_ITRANSLATE2DIA_H
#define IMODELSTAGE_INTERACTION_ITRANSLATE2DIA_H

#include <iModelStage/interaction/iTransformIA.h>

// Moves the selection in a fixed plane given in the first target's frame.
class IMODELSTAGE_EXPORT iTranslate2DIA : public iTransformIA {
    I_CLASS(iTranslate2DIA, iTransformIA, 1)
public:
    iTranslate2DIA();
    ~iTranslate2DIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

    osg::Vec3f getDelta() const { return _delta; }

protected:
    void applyTransform() override;
    // Where the camera line under the cursor cuts the plane.
    bool cursorPoint(iIAPoint const& p, osg::Vec3f& point) override;

    osg::Vec3f _planePoint{0.0f, 0.0f, 0.0f};
    osg::Vec3f _planeNormal{1.0f, 0.0f, 0.0f};
};

#endif
