#ifndef IMODELSTAGE_SNAPPING_ISNAPGEOMETRY_H
#define IMODELSTAGE_SNAPPING_ISNAPGEOMETRY_H

#include <iModelStage/geometry/iOOBBox.h>

#include <osg/Geometry>
#include <osg/Matrixd>

// One drawable under the cursor: the pick box in world space, the
// drawable's local-to-world matrix and the drawable itself.
struct iSnapGeometry {
    iOOBBox box;
    osg::Matrixd matrix;
    osg::Geometry* geometry = nullptr;
};

#endif
