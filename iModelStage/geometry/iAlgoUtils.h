#ifndef IMODELSTAGE_GEOMETRY_IALGOUTILS_H
#define IMODELSTAGE_GEOMETRY_IALGOUTILS_H

#include <iModelStage/frame/iExport.h>

#include <osg/Array>
#include <osg/Matrixd>
#include <osg/Vec3f>

#include <vector>

// Plane and segment geometry tests. Stateless.
class IMODELSTAGE_EXPORT iAlgoUtils {
public:
    iAlgoUtils() = delete;

    // The closest points pa, pb of the segments p1-p2 and p3-p4, with their
    // parameters along each. False for a segment shorter than eps on every
    // axis, for parallel segments, and when a closest point lies within eps
    // of an end or beyond it: segments that touch at an end do not meet.
    static bool linelineIntersect3d(osg::Vec3f const& p1, osg::Vec3f const& p2, osg::Vec3f const& p3,
                                    osg::Vec3f const& p4, osg::Vec3f& pa, osg::Vec3f& pb, double& mua, double& mub,
                                    double eps);
    // Whether the segment comes within distance of an edge of the open
    // outline (the last vertex is not joined to the first).
    static bool lineIntersectPolygon3d(osg::Vec3Array* polygon, osg::Vec3f const& p1, osg::Vec3f const& p2,
                                       double distance, double eps);
    // Appends the end indices of every edge that can be seen from above,
    // along +Y; true when edges holds any.
    static bool extractfreeEdgeOnPolygonTop(osg::Vec3Array* polygon, std::vector<int>& edges);
    // Every point of inner inside outer, by the even-odd rule.
    static bool polygonInPolygon(osg::Vec2dArray const& inner, osg::Vec2dArray const& outer);
    // The rotation of m as three angles in radians.
    static void matrixAnglesToEuler(osg::Matrixd const& m, double& a, double& b, double& c);
};

#endif
