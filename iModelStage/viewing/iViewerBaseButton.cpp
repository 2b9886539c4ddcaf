#include <iModelStage/viewing/iViewerBaseButton.h>

#include <iModelStage/viewing/iViewer.h>

#include <osg/Geode>
#include <osg/Geometry>

#include <cstring>

namespace {

float const hoverScale = 1.2f;
float const pressScale = 1.13f;

void scaleTo(osg::PositionAttitudeTransform* node, float factor)
{
    node->setScale(osg::Vec3d(factor, factor, 1.0));
}

// The picture as GL wants it: RGBA bytes, bottom row first.
osg::Image* toGLImage(QImage const& source)
{
    QImage const converted = source.convertToFormat(QImage::Format_RGBA8888).mirrored(false, true);
    int const bytes = converted.width() * converted.height() * 4;
    auto* data = new unsigned char[static_cast<std::size_t>(bytes)];
    for (int row = 0; row < converted.height(); ++row)
        std::memcpy(data + row * converted.width() * 4, converted.constScanLine(row),
                    static_cast<std::size_t>(converted.width()) * 4);
    auto* image = new osg::Image;
    image->setImage(converted.width(), converted.height(), 1, GL_RGBA, GL_RGBA, GL_UNSIGNED_BYTE, data,
                    osg::Image::USE_NEW_DELETE, 1);
    return image;
}

} // namespace

iViewerBaseButton::iViewerBaseButton(iViewer* viewer, QImage const& image) : m_viewer(viewer)
{
    if (!image.isNull()) {
        m_image = toGLImage(image);
        m_texture = new osg::Texture2D(m_image.get());
        m_texture->setDataVariance(osg::Object::STATIC);
        m_texture->setResizeNonPowerOfTwoHint(false);
        m_texture->setFilter(osg::Texture::MIN_FILTER, osg::Texture::LINEAR_MIPMAP_LINEAR);
        m_texture->setFilter(osg::Texture::MAG_FILTER, osg::Texture::LINEAR);
        m_texture->setWrap(osg::Texture::WRAP_S, osg::Texture::REPEAT);
        m_texture->setWrap(osg::Texture::WRAP_T, osg::Texture::REPEAT);
        osg::StateSet* state = getOrCreateStateSet();
        state->setMode(GL_BLEND, osg::StateAttribute::ON);
        state->setTextureAttributeAndModes(0, m_texture.get(), osg::StateAttribute::ON);
    }
    updateGeometry();
}

void iViewerBaseButton::updateGeometry()
{
    removeChildren(0, getNumChildren());
    auto* geode = new osg::Geode;
    geode->addDrawable(osg::createTexturedQuadGeometry(osg::Vec3(0, 0, 0), osg::Vec3(float(m_width), 0, 0),
                                                       osg::Vec3(0, float(m_height), 0), 0.0f, 0.0f, 1.0f, 1.0f));
    addChild(geode);
}

void iViewerBaseButton::setVisible(bool on)
{
    m_visible = on;
    setNodeMask(on ? 0xFFFFFFu : 0u);
    sigVisibilityChanged();
}

void iViewerBaseButton::setPosition(osg::Vec2i const& at)
{
    m_x = at.x();
    m_y = at.y();
    osg::PositionAttitudeTransform::setPosition(osg::Vec3d(m_x, m_y, 0.0));
}

void iViewerBaseButton::mousePressEvent(int, osg::Vec2i const&)
{
    if (m_viewer)
        m_viewer->setCapture();
    sigPressed();
    scaleTo(this, pressScale);
}

void iViewerBaseButton::mouseReleaseEvent(int, osg::Vec2i const&)
{
    if (m_viewer)
        m_viewer->releaseCapture();
    sigReleased();
    scaleTo(this, hoverScale);
}

void iViewerBaseButton::mouseMoveEvent(osg::Vec2i const&) {}

void iViewerBaseButton::mouseEnterEvent(osg::Vec2i const&)
{
    scaleTo(this, hoverScale);
}

void iViewerBaseButton::mouseLeaveEvent(osg::Vec2i const&)
{
    scaleTo(this, 1.0f);
}
