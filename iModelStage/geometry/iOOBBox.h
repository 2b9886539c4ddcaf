#ifndef IMODELSTAGE_GEOMETRY_IOOBBOX_H
#define IMODELSTAGE_GEOMETRY_IOOBBOX_H

#include <iModelStage/frame/iExport.h>

#include <osg/Vec3f>

// An oriented bounding box: a centre, three unit axes at right angles, and
// the half extent along each. All zero when default-constructed.
struct IMODELSTAGE_EXPORT iOOBBox {
    osg::Vec3f center{0.0f, 0.0f, 0.0f};
    osg::Vec3f axis0{0.0f, 0.0f, 0.0f};
    osg::Vec3f axis1{0.0f, 0.0f, 0.0f};
    osg::Vec3f axis2{0.0f, 0.0f, 0.0f};
    double half0 = 0.0;
    double half1 = 0.0;
    double half2 = 0.0;
};

IMODELSTAGE_EXPORT void iOOBBSet(iOOBBox& box, osg::Vec3f const& center, osg::Vec3f const& axis0,
                                 osg::Vec3f const& axis1, osg::Vec3f const& axis2, double half0, double half1,
                                 double half2);

// Inside or on the surface, with a tolerance of 1e-6. False for a null box.
IMODELSTAGE_EXPORT bool iOOBBBoxPointIn(iOOBBox* box, osg::Vec3f point);

// Whether two boxes meet, by separating axes. False if either is null.
IMODELSTAGE_EXPORT bool iOOBBBoxIntBox(iOOBBox* a, iOOBBox* b);

#endif
