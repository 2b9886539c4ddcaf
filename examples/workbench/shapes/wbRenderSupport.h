#pragma once

#include <osg/Array>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/PrimitiveSet>
#include <osgText/Text>

#include <string>

class iGeometricGroup;

// Small pieces that the workbench's renderers share.
namespace wbRender {

// The font of every text the workbench draws.
extern char const* const Font;

// A geometry over vertices that takes its colour from the group's shared
// colour array, so that a colour change needs no rebuild.
osg::Geometry* coloredGeometry(iGeometricGroup* group, osg::Vec3Array* vertices);

// The segments (i, i + 1) of a chain of count points as GL_LINES indices;
// closed adds the segment from the last point back to the first.
osg::DrawElementsUInt* chainSegments(unsigned int count, bool closed);

// Puts a drawable under parent in a geode of its own; lines and text are
// drawn unlit, so that they show their colour as it is.
osg::Geode* addDrawable(osg::Group* parent, osg::Drawable* drawable, bool lit);

// Sets up text lying in the local XY plane (or turned by 180 degrees about
// its own position when flipped), in world units.
void layText(osgText::Text* text, std::string const& content, osg::Vec3f const& position, double height,
             osgText::Text::AlignmentType alignment, osg::Vec4f const& color, bool flipped = false);

// A filled arrowhead in the local XY plane with its tip at tip, pointing
// along direction, appended to vertices as one triangle of triangles.
void addArrowHead(osg::Vec3Array* vertices, osg::DrawElementsUInt* triangles, osg::Vec3f const& tip,
                  osg::Vec3f const& direction, float length, float base);

// Arrowheads of a quote: its own sizes, but never smaller than the text
// asks for, so that heads stay visible beside the figures (the class
// defaults are hundredths of the default text height).
float arrowLength(double arrowheadlength, double charsize);
float arrowBase(double arrowheadbase, float length);

} // namespace wbRender
