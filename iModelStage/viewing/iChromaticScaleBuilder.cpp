#include <iModelStage/viewing/iChromaticScaleBuilder.h>

#include <iModelStage/viewing/iColorRange.h>
#include <iModelStage/viewing/iViewer.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/LineWidth>
#include <osg/PolygonMode>
#include <osg/PolygonOffset>
#include <osg/Viewport>
#include <osgText/Text>

#include <algorithm>
#include <iomanip>
#include <sstream>

namespace {

char const* const kFont = "fonts/tahoma.ttf";
// More steps than any screen has pixels would only cost memory.
constexpr int kMaximumSteps = 100000;
// Digits beyond these tell nothing about a double.
constexpr int kMaximumPrecision = 20;

// The marker: a small black arrow whose tip is at the origin, pointing
// along +X. Shared by all legends.
osg::Geode* markerGeode()
{
    static osg::ref_ptr<osg::Geode> const marker = [] {
        osg::ref_ptr<osg::Geode> geode = new osg::Geode;
        osg::ref_ptr<osg::Geometry> geometry = new osg::Geometry;
        osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
        vertices->push_back(osg::Vec3f(0.0f, 0.0f, 0.0f));
        vertices->push_back(osg::Vec3f(-15.0f, 6.0f, 0.0f));
        vertices->push_back(osg::Vec3f(-15.0f, -6.0f, 0.0f));
        geometry->setVertexArray(vertices.get());
        osg::ref_ptr<osg::DrawElementsUShort> triangle = new osg::DrawElementsUShort(GL_TRIANGLES);
        triangle->push_back(0);
        triangle->push_back(1);
        triangle->push_back(2);
        geometry->addPrimitiveSet(triangle.get());
        osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
        colors->push_back(osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f));
        geometry->setColorArray(colors.get(), osg::Array::BIND_OVERALL);
        geometry->getOrCreateStateSet()->setAttributeAndModes(
            new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::FILL),
            osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
        geode->addDrawable(geometry.get());
        return geode;
    }();
    return marker.get();
}

// The frame drawn over the bar: the same strip in black lines.
osg::ref_ptr<osg::Geometry> makeFrame(osg::Vec3Array* vertices)
{
    osg::ref_ptr<osg::Geometry> frame = new osg::Geometry;
    frame->setVertexArray(vertices);
    frame->addPrimitiveSet(new osg::DrawArrays(GL_QUAD_STRIP, 0, static_cast<GLsizei>(vertices->size())));
    osg::StateSet* state = frame->getOrCreateStateSet();
    unsigned int const on = osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE;
    state->setAttributeAndModes(new osg::PolygonOffset(-1.0f, -1.0f), on);
    state->setAttributeAndModes(new osg::PolygonMode(osg::PolygonMode::FRONT_AND_BACK, osg::PolygonMode::LINE), on);
    state->setAttributeAndModes(new osg::LineWidth(1.0f), on);
    state->setMode(GL_LINE_SMOOTH, on);
    osg::ref_ptr<osg::Vec4Array> black = new osg::Vec4Array;
    black->push_back(osg::Vec4f(0.0f, 0.0f, 0.0f, 1.0f));
    frame->setColorArray(black.get(), osg::Array::BIND_OVERALL);
    return frame;
}

} // namespace

iChromaticScaleBuilder::iChromaticScaleBuilder() : _root(new iTransformGroup), _indicator(new iTransformGroup)
{
    _indicator->addChild(markerGeode());
}

iChromaticScaleBuilder::iChromaticScaleBuilder(iChromaticScaleBuilder const& other, osg::CopyOp const& copyop)
    : osg::Object(other, copyop),
      _numSteps(other._numSteps),
      _valMin(other._valMin),
      _valMax(other._valMax),
      _height(other._height),
      _width(other._width),
      _colorsRange(other._colorsRange),
      _textValuesPosition(other._textValuesPosition),
      _currentValue(other._currentValue),
      _showCurrent(other._showCurrent),
      _posX(other._posX),
      _posY(other._posY),
      _precision(other._precision),
      _title(other._title),
      _root(new iTransformGroup),
      _indicator(new iTransformGroup),
      _drawRect(other._drawRect),
      _unitConverter(other._unitConverter),
      _unitConverterData(other._unitConverterData),
      _textSize(other._textSize),
      _textColor(other._textColor),
      _viewSpace(other._viewSpace)
{
    _indicator->addChild(markerGeode());
    _root->setPosition(osg::Vec3f(_posX, _posY, 0.0f));
}

iChromaticScaleBuilder::~iChromaticScaleBuilder()
{
    // A legend nobody holds any more would stay in the viewer for good.
    resetViewer();
}

void iChromaticScaleBuilder::setUnitConverterCallbackAndData(UnitConverter converter, void* data)
{
    _unitConverter = converter;
    _unitConverterData = data;
}

void iChromaticScaleBuilder::setCurrentValue(double value)
{
    _currentValue = value;
    updateValueIndicator();
}

void iChromaticScaleBuilder::showCurrentValue(bool show)
{
    _showCurrent = show;
    updateValueIndicator();
}

void iChromaticScaleBuilder::setPosition(float x, float y)
{
    _posX = x;
    _posY = y;
    _root->setPosition(osg::Vec3f(x, y, 0.0f));
}

void iChromaticScaleBuilder::getPosition(float& x, float& y) const
{
    x = _posX;
    y = _posY;
}

void iChromaticScaleBuilder::setDrawRect(bool draw)
{
    _drawRect = draw;
    rebuildGeometry();
}

void iChromaticScaleBuilder::setViewSpace(iViewSpace space)
{
    // Leave the old space entirely, or its camera would stay behind.
    if (space != _viewSpace)
        resetViewer();
    _viewSpace = space;
    rebuildGeometry();
}

void iChromaticScaleBuilder::setViewer(iViewer* viewer)
{
    if (viewer == _viewer.data())
        return;
    resetViewer();
    _viewer = viewer;
}

osg::Group* iChromaticScaleBuilder::viewLayer() const
{
    return _viewer.isNull() ? nullptr : _viewer->getViewLayer();
}

void iChromaticScaleBuilder::rebuildGeometry()
{
    _root->removeChildren(0, _root->getNumChildren());
    osg::Group* layer = viewLayer();
    if (!layer)
        return;

    if (_viewSpace == iViewSpaceModel && _camera.valid())
        layer->removeChild(_camera.get());
    if (_viewSpace == iViewSpaceModel || !_camera.valid()) {
        osg::Group* parent = _viewSpace == iViewSpaceScreen ? makeCamera() : layer;
        if (!parent->containsNode(_root.get()))
            parent->addChild(_root.get());
    }

    if (osg::ref_ptr<osg::Geode> geode = buildGeode())
        _root->addChild(geode.get());
    updateValueIndicator();
    _root->addChild(_indicator.get());
}

osg::Camera* iChromaticScaleBuilder::makeCamera()
{
    int width = 0;
    int height = 0;
    getViewportSize(width, height);
    _camera = new osg::Camera;
    _camera->setProjectionMatrixAsOrtho2D(0.0, width, 0.0, height);
    _camera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    _camera->setViewMatrix(osg::Matrixd::identity());
    _camera->setClearMask(GL_DEPTH_BUFFER_BIT);
    _camera->setRenderOrder(osg::Camera::POST_RENDER);
    _camera->setAllowEventFocus(false);
    viewLayer()->addChild(_camera.get());
    return _camera.get();
}

void iChromaticScaleBuilder::resetViewer()
{
    osg::Group* layer = viewLayer();
    if (!layer)
        return;
    if (_viewSpace == iViewSpaceModel) {
        layer->removeChild(_root.get());
    } else if (_camera.valid()) {
        layer->removeChild(_camera.get());
        _camera = nullptr;
    }
}

void iChromaticScaleBuilder::getSize(float& width, float& height)
{
    osg::ComputeBoundsVisitor bounds;
    _root->accept(bounds);
    osg::BoundingBox const& box = bounds.getBoundingBox();
    width = box.valid() ? box.xMax() - box.xMin() : 0.0f;
    height = box.valid() ? box.yMax() - box.yMin() : 0.0f;
}

void iChromaticScaleBuilder::getViewportSize(int& width, int& height)
{
    width = 0;
    height = 0;
    if (_viewer.isNull())
        return;
    osg::Viewport const* viewport = _viewer->getCamera()->getViewport();
    if (!viewport)
        return;
    width = static_cast<int>(viewport->width());
    height = static_cast<int>(viewport->height());
}

double iChromaticScaleBuilder::unitConvert(double value)
{
    if (_unitConverter && _unitConverterData)
        return _unitConverter(value, _unitConverterData);
    return value;
}

std::string iChromaticScaleBuilder::formatValue(double value)
{
    std::ostringstream text;
    text << std::fixed << std::setprecision(std::clamp(_precision, 0, kMaximumPrecision)) << unitConvert(value);
    return text.str();
}

osg::ref_ptr<osg::Drawable> iChromaticScaleBuilder::makeText(std::string const& string, osg::Vec4f const& color,
                                                             int alignment, osg::Vec3f const& position) const
{
    osg::ref_ptr<osgText::Text> text = new osgText::Text;
    text->setFont(kFont);
    text->setCharacterSize(_textSize);
    text->setColor(color);
    text->setBackdropType(osgText::Text::NONE);
    text->setBackdropImplementation(osgText::Text::DEPTH_RANGE);
    text->setAlignment(static_cast<osgText::Text::AlignmentType>(alignment));
    text->setPosition(position);
    text->setText(string, osgText::String::ENCODING_UTF8);
    return text;
}

osg::Geode* iChromaticScaleBuilder::buildGeode()
{
    if (!(_numSteps > 0) || _valMin > _valMax || !(_height > 0.0) || !(_width > 0.0) || _numSteps > kMaximumSteps)
        return nullptr;

    osg::ref_ptr<iColorRange> range = new iColorRange(static_cast<float>(_valMin), static_cast<float>(_valMax));
    if (!_colorsRange.empty())
        range->setColors(_colorsRange);

    double const step = _height / _numSteps;
    double const valueStep = (_valMax - _valMin) / _numSteps;
    float const halfWidth = static_cast<float>(_width / 2.0);
    osg::ref_ptr<osg::Vec3Array> vertices = new osg::Vec3Array;
    osg::ref_ptr<osg::Vec4Array> colors = new osg::Vec4Array;
    std::vector<double> values;
    for (int i = 0; i <= _numSteps; ++i) {
        float const y = static_cast<float>(i * step);
        double const value = i * valueStep + _valMin;
        osg::Vec4f const color = range->getColor(static_cast<float>(value));
        vertices->push_back(osg::Vec3f(-halfWidth, y, 0.0f));
        vertices->push_back(osg::Vec3f(halfWidth, y, 0.0f));
        colors->push_back(color);
        colors->push_back(color);
        values.push_back(value);
    }

    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    osg::ref_ptr<osg::Geometry> bar = new osg::Geometry;
    bar->setVertexArray(vertices.get());
    bar->addPrimitiveSet(new osg::DrawArrays(GL_QUAD_STRIP, 0, static_cast<GLsizei>(vertices->size())));
    osg::ref_ptr<osg::Vec3Array> normal = new osg::Vec3Array;
    normal->push_back(osg::Vec3f(0.0f, 0.0f, 1.0f));
    bar->setNormalArray(normal.get(), osg::Array::BIND_OVERALL);
    bar->setColorArray(colors.get(), osg::Array::BIND_PER_VERTEX);
    geode->addDrawable(bar.get());

    // The end numbers take the colours of the bar's ends, or of the frame.
    osg::ref_ptr<osg::Geometry> frame = _drawRect ? makeFrame(vertices.get()) : nullptr;
    if (frame.valid())
        geode->addDrawable(frame.get());
    osg::Vec4Array const* endColors = frame.valid() ? static_cast<osg::Vec4Array const*>(frame->getColorArray())
                                                    : colors.get();

    bool const right = _textValuesPosition == iTextRight;
    int const alignment = right ? osgText::Text::LEFT_CENTER : osgText::Text::RIGHT_CENTER;
    float const x = halfWidth + _textSize / 2.0f;
    for (int i = 0; i <= _numSteps; ++i) {
        osg::Vec4f color = _textColor;
        if (i == 0)
            color = endColors->front();
        else if (i == _numSteps)
            color = endColors->back();
        osg::Vec3f const position(right ? x : -x, static_cast<float>(i * step), 0.0f);
        geode->addDrawable(makeText(formatValue(values[i]), color, alignment, position));
    }

    float const top = geode->getBoundingBox().yMax();
    geode->addDrawable(makeText(_title, _textColor, osgText::Text::CENTER_BOTTOM, osg::Vec3f(0.0f, top, 0.0f)));
    geode->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF | osg::StateAttribute::OVERRIDE |
                                                           osg::StateAttribute::PROTECTED);
    return geode.release();
}

void iChromaticScaleBuilder::updateValueIndicator()
{
    bool const show = _showCurrent && _valMin <= _currentValue && _currentValue <= _valMax;
    iNodeGroup::setNodeFlag(_indicator.get(), 0, show);
    if (!show)
        return;

    double const y = _valMax > _valMin ? (_currentValue - _valMin) * _height / (_valMax - _valMin) : 0.0;
    osg::Matrixd const at = _textValuesPosition == iTextRight
                                ? osg::Matrixd::translate(-_width / 2.0, y, 0.0)
                                : osg::Matrixd::rotate(osg::PI, osg::Vec3d(0.0, 0.0, 1.0)) *
                                      osg::Matrixd::translate(_width / 2.0, y, 0.0);
    _indicator->setMatrix(at);
}
