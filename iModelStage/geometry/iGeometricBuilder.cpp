#include <iModelStage/geometry/iGeometricBuilder.h>

#include <osg/AutoTransform>
#include <osg/LineStipple>
#include <osg/LineWidth>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>
#include <osgText/Text>

#include <algorithm>
#include <cfloat>
#include <cmath>

char const* const iGeometricBuilder::labelFont = "fonts/tahoma.ttf";

namespace {

constexpr double kTwoPi = 6.283185307179586;
// Beyond this an arc is a caller's mistake, not an outline to allocate.
constexpr double kMaxArcSegments = 1.0e6;
unsigned const kForcedOn = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;

bool validArc(double rx, double ry, double start, double end)
{
    return rx > 0.0 && ry > 0.0 && start < end;
}

// n segments from start to end, centred on (rx, ry), closed back to the
// first point. Angles beyond a full turn either way become a full turn.
void fillArc(osg::Vec2Array* out, int n, double rx, double ry, double start, double end)
{
    double const a0 = std::fabs(start) > kTwoPi ? kTwoPi : start;
    double const a1 = std::fabs(end) > kTwoPi ? kTwoPi : end;
    double const step = (a1 - a0) / n;
    out->resize(static_cast<std::size_t>(n) + 1);
    for (int i = 0; i <= n; ++i) {
        double const x = i * step + a0;
        (*out)[i].set(static_cast<float>(std::cos(x) * rx + rx), static_cast<float>(std::sin(x) * ry + ry));
    }
    osg::Vec2 const first = out->front();
    out->push_back(first);
    out->dirty();
}

void setPoints(osg::Vec2Array* out, std::initializer_list<osg::Vec2> points)
{
    out->clear();
    for (osg::Vec2 const& p : points)
        out->push_back(p);
    out->dirty();
}

// count points of the quarter ellipse around (cx, cy) from angle start.
void addCorner(osg::Vec2Array* out, double cx, double cy, double rx, double ry, double start, int count)
{
    double const step = (osg::PI / 2.0) / iGeometricBuilder::roundedCornerSegments;
    for (int i = 0; i < count; ++i) {
        double const angle = start + i * step;
        out->push_back(osg::Vec2(static_cast<float>(cx + std::cos(angle) * rx),
                                 static_cast<float>(cy + std::sin(angle) * ry)));
    }
}

osg::Vec3f unit(osg::Vec3f v)
{
    v.normalize();
    return v;
}

osg::Vec4Array* oneColor(osg::Vec4f const& color)
{
    return new osg::Vec4Array(osg::Array::BIND_OVERALL, 1, &color);
}

osg::DrawElementsUInt* elements(GLenum mode, std::initializer_list<GLuint> indices)
{
    return new osg::DrawElementsUInt(mode, indices.begin(), indices.end());
}

// Black on a light background, white on a dark one.
osg::Vec4f contrastColor(osg::Vec4f const& background)
{
    double const r = background.r(), g = background.g(), b = background.b();
    double const s3 = std::sqrt(3.0);
    double const len = std::sqrt(r * r + g * g + b * b);
    double f = 0.0;
    if (len > 1e-6) {
        double const k = (r + g + b) / (len * s3);
        f = std::sqrt((k * r) * (k * r) + (k * g) * (k * g) + (k * b) * (k * b));
    }
    bool const light = !(s3 * 0.5 > f);
    return light ? osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f) : osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f);
}

osg::Geode* outlineGeode(osg::Vec3Array* vertices, osg::Vec4f const& color)
{
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    geometry->addPrimitiveSet(new osg::DrawArrays(GL_POLYGON, 0, static_cast<GLsizei>(vertices->size())));
    geometry->setColorArray(oneColor(color));
    osg::Geode* geode = new osg::Geode;
    geode->addDrawable(geometry);
    return geode;
}

// The border is drawn as lines pulled towards the viewer, so that it shows
// over its own background.
void setBorderState(osg::StateSet* stateSet)
{
    stateSet->setAttributeAndModes(new osg::PolygonOffset(-1.0f, -1.0f), kForcedOn);
    stateSet->setAttributeAndModes(new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE),
                                   kForcedOn);
    stateSet->setAttributeAndModes(new osg::LineWidth(1.0f), kForcedOn);
    stateSet->setMode(GL_LINE_SMOOTH, kForcedOn);
    stateSet->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::OVERRIDE);
}

} // namespace

bool iGeometricBuilder::makeArc(osg::Vec2Array* out, double rx, double ry, double start, double end, int segments)
{
    if (!out || !validArc(rx, ry, start, end) || segments < 3)
        return false;
    double const n = (end - start) * rx / (rx * 2.0 * osg::PI / segments);
    if (!(n >= 1.0 && n <= kMaxArcSegments))
        return false;
    fillArc(out, static_cast<int>(n), rx, ry, start, end);
    return true;
}

bool iGeometricBuilder::makeArcBySegmentLength(osg::Vec2Array* out, double segmentLength, double rx, double ry,
                                               double start, double end)
{
    if (!out || !validArc(rx, ry, start, end) || !(segmentLength > 0.0))
        return false;
    double const n = std::floor((end - start) * rx / segmentLength);
    if (!(n >= 3.0 && n <= kMaxArcSegments))
        return false;
    fillArc(out, static_cast<int>(n), rx, ry, start, end);
    return true;
}

bool iGeometricBuilder::makeRectangle(osg::Vec2Array* out, double height, double width)
{
    if (!out || height == 0.0 || width == 0.0)
        return false;
    float const w = static_cast<float>(width), h = static_cast<float>(height);
    setPoints(out, {{0.0f, 0.0f}, {w, 0.0f}, {w, h}, {0.0f, h}, {0.0f, 0.0f}});
    return true;
}

bool iGeometricBuilder::makeRoundedRectangle(osg::Vec2Array* out, double width, double height, double rx, double ry)
{
    if (!out || !(width > 0.0) || !(height > 0.0) || rx < 0.0 || ry < 0.0 || !(rx < width) || !(ry < height))
        return false;
    double const hw = width / 2.0, hh = height / 2.0;
    if (std::fabs(rx) < 1e-6 || std::fabs(ry) < 1e-6) {
        float const x = static_cast<float>(hw), y = static_cast<float>(hh);
        setPoints(out, {{-x, -y}, {x, -y}, {x, y}, {-x, y}, {-x, -y}});
        return true;
    }
    double const cx = hw - rx, cy = hh - ry;
    int const full = roundedCornerSegments + 1;
    out->clear();
    out->push_back(osg::Vec2(static_cast<float>(-cx), static_cast<float>(-hh)));
    addCorner(out, cx, -cy, rx, ry, -osg::PI / 2.0, full);
    addCorner(out, cx, cy, rx, ry, 0.0, full);
    addCorner(out, -cx, cy, rx, ry, osg::PI / 2.0, full);
    // The last quarter stops short: its end is the first point.
    addCorner(out, -cx, -cy, rx, ry, osg::PI, roundedCornerSegments);
    osg::Vec2 const first = out->front();
    out->push_back(first);
    out->dirty();
    return true;
}

bool iGeometricBuilder::computeNormal(osg::Vec3Array const& vertices, osg::Vec3f& out)
{
    out.set(0.0f, 0.0f, 0.0f);
    std::size_t const count = vertices.size();
    if (count < 3)
        return false;
    osg::Vec3d sum(0.0, 0.0, 0.0);
    for (std::size_t i = 0; i < count; ++i) {
        osg::Vec3d const c = vertices[i];
        osg::Vec3d const n = vertices[(i + 1) % count];
        sum.x() += (c.y() - n.y()) * (c.z() + n.z());
        sum.y() += (c.z() - n.z()) * (c.x() + n.x());
        sum.z() += (c.x() - n.x()) * (c.y() + n.y());
    }
    sum.normalize();
    out = osg::Vec3f(sum);
    return std::fabs(out.length() - 1.0) < 1e-6;
}

bool iGeometricBuilder::alignedVerts(osg::Vec3Array const& vertices, double angle)
{
    if (vertices.size() < 3)
        return true;
    osg::Vec3f const d = unit(vertices[1] - vertices[0]);
    double const limit = std::cos(angle);
    for (std::size_t i = 2; i < vertices.size(); ++i) {
        osg::Vec3f const e = unit(vertices[i] - vertices[0]);
        if (!(limit < std::fabs(d * e)))
            return false;
    }
    return true;
}

osg::Geometry* iGeometricBuilder::buildLine(osg::Vec3f const& a, osg::Vec3f const& b, osg::Vec4f const& color)
{
    osg::Geometry* geometry = new osg::Geometry;
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    vertices->push_back(a);
    vertices->push_back(b);
    geometry->setVertexArray(vertices);
    geometry->addPrimitiveSet(elements(GL_LINES, {0, 1}));
    geometry->setColorArray(oneColor(color));
    geometry->getOrCreateStateSet()->setAttributeAndModes(new osg::LineStipple(1, 0x00FF), kForcedOn);
    return geometry;
}

osg::Geometry* iGeometricBuilder::buildArrow(osg::Vec3f const& from, osg::Vec3f const& to, osg::Vec3f const& up,
                                             double headLength, double headWidth, osg::Vec4f const& color)
{
    double const length = std::min(headLength, static_cast<double>((to - from).length()));
    osg::Vec3f const d = unit(to - from);
    osg::Vec3f const u = unit(up);
    osg::Vec3f const s = unit(u ^ d);
    osg::Vec3f const n = unit(d ^ s);
    osg::Vec3f const h1 = to - d * static_cast<float>(length) + s * static_cast<float>(headWidth * 0.5);
    osg::Vec3f const h2 = h1 - s * static_cast<float>(headWidth);

    osg::Geometry* geometry = new osg::Geometry;
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    for (osg::Vec3f const& v : {from, to, h1, h2})
        vertices->push_back(v);
    geometry->setVertexArray(vertices);
    geometry->addPrimitiveSet(elements(GL_LINES, {0, 1}));
    geometry->addPrimitiveSet(elements(GL_TRIANGLES, {1, 2, 3}));
    geometry->setNormalArray(new osg::Vec3Array(osg::Array::BIND_OVERALL, 1, &n));
    geometry->setColorArray(oneColor(color));
    return geometry;
}

void iGeometricBuilder::buildBox(osg::Geode* geode, double dx, double dy, double dz)
{
    if (!geode)
        return;
    geode->removeDrawables(0, geode->getNumDrawables());
    float const x = static_cast<float>(dx), y = static_cast<float>(dy), z = static_cast<float>(dz);
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    for (osg::Vec3f const& v : {osg::Vec3f(0, 0, 0), osg::Vec3f(x, 0, 0), osg::Vec3f(x, y, 0), osg::Vec3f(0, y, 0),
                                osg::Vec3f(0, 0, z), osg::Vec3f(x, 0, z), osg::Vec3f(x, y, z), osg::Vec3f(0, y, z)})
        vertices->push_back(v);

    // Two of these normals point inward; the two-sided lighting of the
    // scene hides it.
    struct Face {
        std::initializer_list<GLuint> indices;
        osg::Vec3f normal;
    };
    Face const faces[] = {{{0, 1, 2, 3}, {0, 0, 1}}, {{4, 5, 6, 7}, {0, 0, 1}}, {{4, 5, 1, 0}, {0, 1, 0}},
                          {{5, 1, 2, 6}, {1, 0, 0}}, {{6, 2, 3, 7}, {0, 1, 0}}, {{3, 0, 4, 7}, {-1, 0, 0}}};

    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    osg::ref_ptr<osg::Vec3Array> normals = new osg::Vec3Array(osg::Array::BIND_PER_PRIMITIVE_SET);
    geometry->setVertexArray(vertices);
    for (Face const& face : faces) {
        geometry->addPrimitiveSet(elements(GL_QUADS, face.indices));
        normals->push_back(face.normal);
    }
    geometry->setNormalArray(normals);
    geode->addDrawable(geometry);
}

void iGeometricBuilder::buildLabel(osg::PositionAttitudeTransform* target, std::string const& text, double size,
                                   osg::Vec4f const& background, bool autoContrast, osg::Vec4f const& textColor,
                                   osg::Vec4f const& borderColor)
{
    if (!target)
        return;
    target->removeChildren(0, target->getNumChildren());

    osg::Vec4f ink = textColor;
    osg::Vec4f border = borderColor;
    if (autoContrast)
        ink = border = contrastColor(background);

    osg::ref_ptr<osgText::Text> label = new osgText::Text;
    label->setCharacterSize(static_cast<float>(size));
    label->setFont(labelFont);
    label->setColor(ink);
    label->setAlignment(osgText::Text::CENTER_CENTER);
    label->setText(text);
    osg::ref_ptr<osg::Geode> textGeode = new osg::Geode;
    textGeode->addDrawable(label);

    osg::ref_ptr<osg::AutoTransform> facing = new osg::AutoTransform;
    facing->setAutoRotateMode(osg::AutoTransform::ROTATE_TO_SCREEN);
    facing->setAutoScaleToScreen(true);
    facing->setMinimumScale(0.0);
    facing->setMaximumScale(FLT_MAX);
    facing->addChild(textGeode);
    target->addChild(facing);

    osg::BoundingBox const box = label->getBoundingBox();
    double const c = label->getCharacterHeight();
    double w = (box.xMax() - box.xMin()) + c / 2.0;
    double const h = (box.yMax() - box.yMin()) + c / 2.0;
    w = std::max(w, h);

    osg::ref_ptr<osg::Vec2Array> outline = new osg::Vec2Array;
    if (makeRoundedRectangle(outline, w, h, c / 2.0, c / 2.0)) {
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
        for (osg::Vec2 const& p : *outline)
            vertices->push_back(osg::Vec3f(p.x(), p.y(), 0.0f));
        facing->addChild(outlineGeode(vertices, background));
        osg::Geode* frame = outlineGeode(vertices, border);
        setBorderState(frame->getOrCreateStateSet());
        facing->addChild(frame);
    }

    osg::StateSet* stateSet = target->getOrCreateStateSet();
    stateSet->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    stateSet->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    stateSet->setRenderBinDetails(9999, "RenderBin", osg::StateSet::USE_RENDERBIN_DETAILS);
}
