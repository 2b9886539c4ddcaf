#ifndef IMODELSTAGE_INTERACTION_ITRANSLATE1DIA_H
#define IMODELSTAGE_INTERACTION_ITRANSLATE1DIA_H

#include <iModelStage/interaction/iTransformIA.h>

// Moves the selection along a fixed axis given in the first target's frame.
class IMODELSTAGE_EXPORT iTranslate1DIA : public iTransformIA {
    I_CLASS(iTranslate1DIA, iTransformIA, 1)
public:
    iTranslate1DIA();
    ~iTranslate1DIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

    osg::Vec3f getDelta() const { return _delta; }

protected:
    void applyTransform() override;
    // The point of the axis nearest the camera line under the cursor.
    bool cursorPoint(iIAPoint const& p, osg::Vec3f& point) override;

    osg::Vec3f _axisPoint0{0.0f, 0.0f, 0.0f};
    osg::Vec3f _axisPoint1{1.0f, 0.0f, 0.0f};
};

#endif
