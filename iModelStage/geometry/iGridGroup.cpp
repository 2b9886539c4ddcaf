#include <iModelStage/geometry/iGridGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <osg/Depth>
#include <osg/Geode>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/PolygonMode>

#include <algorithm>
#include <cstring>

I_REGISTER_PERSISTENT_CLASS(iGridGroup)
I_REGISTER_PROPERTY(iGridGroup, bool, axisvisible, "grid")
I_REGISTER_PROPERTY(iGridGroup, iColor4, bg, "grid")
I_REGISTER_PROPERTY(iGridGroup, iColor4, clrh, "grid")
I_REGISTER_PROPERTY(iGridGroup, iColor4, clrv, "grid")
I_REGISTER_PROPERTY(iGridGroup, bool, gridvisible, "grid")
I_REGISTER_PROPERTY(iGridGroup, double, hstep, "grid")
I_REGISTER_PROPERTY(iGridGroup, int, nhs, "grid")
I_REGISTER_PROPERTY(iGridGroup, int, nvs, "grid")
I_REGISTER_PROPERTY(iGridGroup, bool, planevisible, "grid")
I_REGISTER_PROPERTY(iGridGroup, double, vstep, "grid")
I_REGISTER_PROPERTY(iGridGroup, iColor4, clrhq, "quadrant")
I_REGISTER_PROPERTY(iGridGroup, iColor4, clrvq, "quadrant")
I_REGISTER_PROPERTY(iGridGroup, int, nhq, "quadrant")
I_REGISTER_PROPERTY(iGridGroup, int, vvq, "quadrant")

namespace {

osg::Vec4f rgba(int r, int g, int b, float a)
{
    return osg::Vec4f(float(r) / 255.0f, float(g) / 255.0f, float(b) / 255.0f, a);
}

osg::Vec4f const kAxisX(1.0f, 0.0f, 0.0f, 0.6f);
osg::Vec4f const kAxisY(0.0f, 1.0f, 0.0f, 0.6f);

// The properties whose change rebuilds the grid.
char const* const kGeometryProperties[] = {"planevisible", "gridvisible", "axisvisible", "hstep", "vstep",
                                           "nhs",          "nvs",         "nhq",         "vvq",   "bg",
                                           "clrvq",        "clrhq",       "clrh",        "clrv"};

bool rebuildsGrid(char const* name)
{
    if (!name)
        return false;
    return std::any_of(std::begin(kGeometryProperties), std::end(kGeometryProperties),
                       [name](char const* known) { return std::strcmp(known, name) == 0; });
}

// A zero period would divide by zero: it marks no line as strong.
bool isStrong(int index, int period)
{
    return period != 0 && index % period == 0;
}

unsigned int linesPerSide(int count)
{
    return static_cast<unsigned int>(std::clamp(count, 0, iGridGroup::MaxLinesPerSide));
}

osg::Geode* newPartGeode(bool visible)
{
    osg::Geode* geode = new osg::Geode;
    iNodeGroup::setNodeFlag(geode, 0, visible);
    return geode;
}

// Lines drawn flat over everything, in their own colours.
osg::StateSet* newLineStateSet(osg::StateAttribute::GLModeValue depthTest)
{
    osg::StateSet* state = new osg::StateSet;
    state->setMode(GL_BLEND, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);
    state->setMode(GL_DEPTH_TEST, depthTest);
    osg::StateAttribute::OverrideValue const forced =
        osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED;
    state->setAttribute(new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE), forced);
    state->setAttribute(new osg::Material, forced);
    state->setMode(GL_LIGHTING,
                   osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED);
    return state;
}

osg::DrawElementsUInt* runningIndices(GLenum mode, unsigned int count)
{
    osg::DrawElementsUInt* indices = new osg::DrawElementsUInt(mode);
    indices->reserve(count);
    for (unsigned int i = 0; i < count; ++i)
        indices->push_back(i);
    return indices;
}

// Two vertices per line, both in the line's colour.
void pushLine(osg::Vec3Array& vertices, osg::Vec4Array& colours, osg::Vec3f const& a, osg::Vec3f const& b,
              osg::Vec4f const& colour)
{
    vertices.push_back(a);
    vertices.push_back(b);
    colours.push_back(colour);
    colours.push_back(colour);
}

} // namespace

iGridGroup::iGridGroup()
{
    setDefaults();
    setFlag(1, false);
    setFlag(2, false);
    sigPropertyChanged.connect(this, &iGridGroup::slotPropertyChanged);
}

iGridGroup::iGridGroup(iGridGroup const& other, osg::CopyOp const& copyop) : iGeometricGroup(other, copyop)
{
    _planevisible = other._planevisible;
    _gridvisible = other._gridvisible;
    _axisvisible = other._axisvisible;
    _bg = other._bg;
    _hstep = other._hstep;
    _vstep = other._vstep;
    _nhs = other._nhs;
    _nvs = other._nvs;
    _clrh = other._clrh;
    _clrv = other._clrv;
    _nhq = other._nhq;
    _vvq = other._vvq;
    _clrvq = other._clrvq;
    _clrhq = other._clrhq;
    sigPropertyChanged.connect(this, &iGridGroup::slotPropertyChanged);
}

iGridGroup::~iGridGroup() = default;

void iGridGroup::setDefaults()
{
    _planevisible = true;
    _gridvisible = true;
    _axisvisible = true;
    _bg = rgba(77, 92, 123, 63.0f / 255.0f);
    _hstep = 1.0;
    _vstep = 1.0;
    _nhs = 50;
    _nvs = 50;
    _clrh = rgba(58, 69, 92, 1.0f);
    _clrv = _clrh;
    _nhq = 10;
    _vvq = 10;
    _clrvq = rgba(46, 56, 74, 1.0f);
    _clrhq = _clrvq;
}

void iGridGroup::slotPropertyChanged(iRoot*, char const* name)
{
    if (rebuildsGrid(name))
        updateGeometry(false);
}

void iGridGroup::rebuildGeometry()
{
    double const width = double(_nhs) * _hstep;
    double const height = double(_nvs) * _vstep;
    float const w = static_cast<float>(width);
    float const h = static_cast<float>(height);

    removeChildren(0, getNumChildren());
    osg::ref_ptr<osg::Geode> plane = buildPlane(w, h);
    osg::ref_ptr<osg::Geode> lines = buildLines(w, h);
    osg::ref_ptr<osg::Geode> axes = buildAxes(w, h);
    addChild(plane.get());
    addChild(lines.get());
    addChild(axes.get());
}

osg::Geode* iGridGroup::buildPlane(float w, float h)
{
    osg::Geode* geode = newPartGeode(_planevisible);
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    osg::StateSet* state = geometry->getOrCreateStateSet();
    state->setMode(GL_BLEND, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE | osg::StateAttribute::PROTECTED);
    state->setAttribute(new osg::Depth(osg::Depth::LESS, 0.0, 1.0, false),
                        osg::StateAttribute::ON | osg::StateAttribute::PROTECTED);
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED);

    osg::ref_ptr<osg::Vec3Array> corners = new osg::Vec3Array;
    corners->push_back(osg::Vec3f(-w, h, 0.0f));
    corners->push_back(osg::Vec3f(-w, -h, 0.0f));
    corners->push_back(osg::Vec3f(w, -h, 0.0f));
    corners->push_back(osg::Vec3f(w, h, 0.0f));
    geometry->setVertexArray(corners.get());
    geometry->addPrimitiveSet(runningIndices(GL_QUADS, 4));
    geometry->setColorArray(new osg::Vec4Array(1, &_bg), osg::Array::BIND_OVERALL);
    geode->addDrawable(geometry.get());
    return geode;
}

osg::Geode* iGridGroup::buildLines(float w, float h)
{
    osg::Geode* geode = newPartGeode(_gridvisible);
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setStateSet(newLineStateSet(osg::StateAttribute::OFF));

    unsigned int const across = linesPerSide(_nhs);
    unsigned int const along = linesPerSide(_nvs);
    unsigned int const vertexCount = 4 * (across + along);
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array;
    vertices->reserve(vertexCount);
    colours->reserve(vertexCount);
    // Counted outward from the centre, so that the strong lines are
    // symmetric. The axes stand at x = 0 and y = 0.
    for (double side : {-1.0, 1.0}) {
        for (unsigned int i = 1; i <= across; ++i) {
            float const x = static_cast<float>(side * (double(i) * _hstep));
            pushLine(*vertices, *colours, osg::Vec3f(x, -h, 0.0f), osg::Vec3f(x, h, 0.0f),
                     isStrong(int(i), _nhq) ? _clrhq : _clrh);
        }
    }
    for (double side : {-1.0, 1.0}) {
        for (unsigned int j = 1; j <= along; ++j) {
            float const y = static_cast<float>(side * (double(j) * _vstep));
            pushLine(*vertices, *colours, osg::Vec3f(-w, y, 0.0f), osg::Vec3f(w, y, 0.0f),
                     isStrong(int(j), _vvq) ? _clrvq : _clrv);
        }
    }
    geometry->setVertexArray(vertices.get());
    geometry->setColorArray(colours.get(), osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(runningIndices(GL_LINES, vertexCount));
    geode->addDrawable(geometry.get());
    return geode;
}

osg::Geode* iGridGroup::buildAxes(float w, float h)
{
    osg::Geode* geode = newPartGeode(_axisvisible);
    osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
    geometry->setStateSet(newLineStateSet(osg::StateAttribute::OFF | osg::StateAttribute::PROTECTED));
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array;
    pushLine(*vertices, *colours, osg::Vec3f(-w, 0.0f, 0.0f), osg::Vec3f(w, 0.0f, 0.0f), kAxisX);
    pushLine(*vertices, *colours, osg::Vec3f(0.0f, h, 0.0f), osg::Vec3f(0.0f, -h, 0.0f), kAxisY);
    geometry->setVertexArray(vertices.get());
    geometry->setColorArray(colours.get(), osg::Array::BIND_PER_VERTEX);
    geometry->addPrimitiveSet(runningIndices(GL_LINES, 4));
    geode->addDrawable(geometry.get());
    return geode;
}

namespace {

iColor4 readColour(iInStream& stream)
{
    double values[4];
    stream.readDoubles(values, 4);
    return iColor4(static_cast<float>(values[0]), static_cast<float>(values[1]), static_cast<float>(values[2]),
                   static_cast<float>(values[3]));
}

void writeColour(iOutStream& stream, iColor4 const& colour)
{
    for (int i = 0; i < 4; ++i)
        stream.writeDouble(static_cast<double>(colour[i]));
}

} // namespace

void iGridGroup::read(iInStream& stream, int)
{
    set_planevisible(stream.readBool());
    set_gridvisible(stream.readBool());
    set_axisvisible(stream.readBool());
    set_bg(readColour(stream));
    set_hstep(stream.readDouble());
    set_vstep(stream.readDouble());
    set_nhs(stream.readInt());
    set_nvs(stream.readInt());
    set_clrh(readColour(stream));
    set_clrv(readColour(stream));
    set_nhq(stream.readInt());
    set_vvq(stream.readInt());
    set_clrhq(readColour(stream));
    set_clrvq(readColour(stream));
}

void iGridGroup::write(iOutStream& stream)
{
    stream.writeBool(_planevisible);
    stream.writeBool(_gridvisible);
    stream.writeBool(_axisvisible);
    writeColour(stream, _bg);
    stream.writeDouble(_hstep);
    stream.writeDouble(_vstep);
    stream.writeInt(_nhs);
    stream.writeInt(_nvs);
    writeColour(stream, _clrh);
    writeColour(stream, _clrv);
    stream.writeInt(_nhq);
    stream.writeInt(_vvq);
    writeColour(stream, _clrhq);
    writeColour(stream, _clrvq);
}
