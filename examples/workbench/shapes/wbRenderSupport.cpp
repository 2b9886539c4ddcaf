#include "shapes/wbRenderSupport.h"

#include <iModelStage/geometry/iGeometricGroup.h>

#include <osg/LineWidth>
#include <osg/Quat>

#include <algorithm>

char const* const wbRender::Font = "fonts/tahoma.ttf";

osg::Geometry* wbRender::coloredGeometry(iGeometricGroup* group, osg::Vec3Array* vertices)
{
    auto* geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    geometry->setColorArray(group->getSharedColorArray(), osg::Array::BIND_OVERALL);
    return geometry;
}

osg::DrawElementsUInt* wbRender::chainSegments(unsigned int count, bool closed)
{
    auto* lines = new osg::DrawElementsUInt(GL_LINES);
    for (unsigned int i = 0; i + 1 < count; ++i) {
        lines->push_back(i);
        lines->push_back(i + 1);
    }
    // Two points are one segment already; closing them would draw it twice.
    if (closed && count > 2) {
        lines->push_back(count - 1);
        lines->push_back(0);
    }
    return lines;
}

osg::Geode* wbRender::addDrawable(osg::Group* parent, osg::Drawable* drawable, bool lit)
{
    auto* geode = new osg::Geode;
    geode->addDrawable(drawable);
    if (!lit) {
        osg::StateSet* state = geode->getOrCreateStateSet();
        state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        state->setAttributeAndModes(new osg::LineWidth(2.0f));
    }
    parent->addChild(geode);
    return geode;
}

void wbRender::layText(osgText::Text* text, std::string const& content, osg::Vec3f const& position, double height,
                       osgText::Text::AlignmentType alignment, osg::Vec4f const& color, bool flipped)
{
    text->setFont(Font);
    text->setCharacterSizeMode(osgText::Text::OBJECT_COORDS);
    text->setCharacterSize(static_cast<float>(height));
    text->setAxisAlignment(osgText::Text::XY_PLANE);
    text->setRotation(flipped ? osg::Quat(osg::PI, osg::Vec3f(0.0f, 0.0f, 1.0f)) : osg::Quat());
    text->setAlignment(alignment);
    text->setPosition(position);
    text->setColor(color);
    text->setText(content, osgText::String::ENCODING_UTF8);
}

void wbRender::addArrowHead(osg::Vec3Array* vertices, osg::DrawElementsUInt* triangles, osg::Vec3f const& tip,
                            osg::Vec3f const& direction, float length, float base)
{
    osg::Vec3f along = direction;
    along.normalize();
    osg::Vec3f const across = osg::Vec3f(-along.y(), along.x(), 0.0f) * (base * 0.5f);
    osg::Vec3f const back = tip - along * length;
    unsigned int const first = vertices->size();
    vertices->push_back(tip);
    vertices->push_back(back + across);
    vertices->push_back(back - across);
    for (unsigned int i = 0; i < 3; ++i)
        triangles->push_back(first + i);
}

float wbRender::arrowLength(double arrowheadlength, double charsize)
{
    return static_cast<float>(std::max(arrowheadlength, charsize * 0.5));
}

float wbRender::arrowBase(double arrowheadbase, float length)
{
    return std::max(static_cast<float>(arrowheadbase), length * 0.4f);
}
