#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICBUILDER_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICBUILDER_H

#include <iModelStage/frame/iExport.h>

#include <osg/Array>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/PositionAttitudeTransform>
#include <osg/Vec3f>
#include <osg/Vec4f>

#include <string>

// Outlines and small ready-made drawables for tools, dimension marks and
// labels. Stateless.
//
// Outlines are closed: their last point repeats the first. Arcs and plain
// rectangles stand in the positive quadrant; the rounded rectangle is
// centred on the origin.
class IMODELSTAGE_EXPORT iGeometricBuilder {
public:
    // Segments of each corner of a rounded rectangle.
    static int const roundedCornerSegments = 4;
    // The font of labels; the library makes it resolve at start-up.
    static char const* const labelFont;

    iGeometricBuilder() = delete;

    // An elliptic arc centred on (rx, ry), from start to end in radians,
    // with a segment count scaled from segments per full turn. False, with
    // out untouched, for a radius not above 0, fewer than 3 segments, an
    // empty angle range, or an arc of no segment or of over a million.
    static bool makeArc(osg::Vec2Array* out, double rx, double ry, double start, double end, int segments);
    // The same, with segments about segmentLength long; false below 3.
    static bool makeArcBySegmentLength(osg::Vec2Array* out, double segmentLength, double rx, double ry, double start,
                                       double end);
    // Height first: (2, 3) is 3 wide and 2 high. Replaces the contents.
    static bool makeRectangle(osg::Vec2Array* out, double height, double width);
    // Centred on the origin, corners of radii rx, ry; square corners when
    // either radius is below 1e-6. Replaces the contents.
    static bool makeRoundedRectangle(osg::Vec2Array* out, double width, double height, double rx, double ry);

    // The unit normal of the outline by Newell's method; false, with out
    // zero or not of unit length, for a degenerate outline.
    static bool computeNormal(osg::Vec3Array const& vertices, osg::Vec3f& out);
    // Whether every vertex lies within angle of the line from the first
    // vertex through the second, in either direction.
    static bool alignedVerts(osg::Vec3Array const& vertices, double angle);

    // A dashed line of one colour. The caller owns the result.
    static osg::Geometry* buildLine(osg::Vec3f const& a, osg::Vec3f const& b, osg::Vec4f const& color);
    // A shaft and a triangular head in the plane that up and the arrow
    // span. The head is never longer than the arrow. The caller owns it.
    static osg::Geometry* buildArrow(osg::Vec3f const& from, osg::Vec3f const& to, osg::Vec3f const& up,
                                     double headLength, double headWidth, osg::Vec4f const& color);
    // Replaces the drawables of geode with a box from the origin to
    // (dx, dy, dz).
    static void buildBox(osg::Geode* geode, double dx, double dy, double dz);
    // Replaces the children of target with a screen-facing, screen-sized
    // text on a rounded background with a border, drawn on top of the
    // scene. With autoContrast, text and border are black on a light
    // background and white on a dark one.
    static void buildLabel(osg::PositionAttitudeTransform* target, std::string const& text, double size,
                           osg::Vec4f const& background, bool autoContrast, osg::Vec4f const& textColor,
                           osg::Vec4f const& borderColor);
};

#endif
