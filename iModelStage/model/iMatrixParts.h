#ifndef IMODELSTAGE_MODEL_IMATRIXPARTS_H
#define IMODELSTAGE_MODEL_IMATRIXPARTS_H

#include <iModelStage/frame/iExport.h>

#include <osg/Matrixd>
#include <osg/Quat>
#include <osg/Vec3d>

// A transform's matrix from its scale, rotation and translation, and back.
//
// compose gives, bit for bit, what OSG's products scale(s) * rotate(q) *
// translate(t) give, negative zeros included, without the two general 4x4
// products. decompose takes a matrix whose rows are a scale times a rotation
// apart directly, which is what every transform writes; any other matrix
// goes through OSG's general decomposition. The scale carries the sign of
// the determinant on all three axes, as OSG's does.
class IMODELSTAGE_EXPORT iMatrixParts {
public:
    static osg::Matrixd compose(osg::Vec3d const& scale, osg::Quat const& rotation, osg::Vec3d const& translation);
    static void decompose(osg::Matrixd const& m, osg::Vec3d& translation, osg::Quat& rotation, osg::Vec3d& scale);

    // The rotation of an orthonormal, right-handed 3x3 upper part.
    static osg::Quat rotationOf(osg::Matrixd const& m);

private:
    static bool decomposeScaledRotation(osg::Matrixd const& m, osg::Vec3d& translation, osg::Quat& rotation,
                                        osg::Vec3d& scale);
};

#endif
