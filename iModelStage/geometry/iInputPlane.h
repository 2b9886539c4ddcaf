#ifndef IMODELSTAGE_GEOMETRY_IINPUTPLANE_H
#define IMODELSTAGE_GEOMETRY_IINPUTPLANE_H

#include <iModelStage/model/iTransformGroup.h>

#include <osg/Vec3f>

// The working plane on which a viewer turns pointer input into model
// coordinates: the XY plane of the object's transform. The normal is kept
// in step with the matrix; nothing of it is stored.
class IMODELSTAGE_EXPORT iInputPlane : public iTransformGroup {
    I_CLASS(iInputPlane, iTransformGroup, 1)
    I_OSG_NODE(iInputPlane)
public:
    iInputPlane();
    iInputPlane(iInputPlane const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // The plane's unit normal, or zero for a matrix without a Z axis.
    osg::Vec3f const& getNormal() const { return _normal; }
    // Signed distance of p from the plane in the plane's parent space,
    // negative below it.
    double pointDistance(osg::Vec3f const& p);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

protected:
    ~iInputPlane() override;

    void updateNormal(iTransformGroup*);

private:
    osg::Vec3f _normal{0.0f, 0.0f, 1.0f};
};

#endif
