#include <iModelStage/dimensioning/iPointQuote.h>

#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPolygon>

#include <osg/Geode>

#include <cmath>

I_REGISTER_PERSISTENT_CLASS(iPointQuote)

iPointQuote::iPointQuote()
{
    build();
}

iPointQuote::iPointQuote(iPointQuote const& other, osg::CopyOp const& copyop) : iBaseQuote(other, copyop)
{
    build();
}

iPointQuote::~iPointQuote() = default;

void iPointQuote::build()
{
    setColor(osg::Vec4f(0.95f, 0.61f, 0.11f, 0.0f));
    _offsetTransform = new osg::PositionAttitudeTransform;
    _image = new osg::Image;
    _drawPixels = new osg::DrawPixels;
    _drawPixels->setImage(_image.get());
    _drawable = _drawPixels;
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    osg::StateSet* state = geode->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::OFF);
    state->setMode(GL_BLEND, osg::StateAttribute::OFF);
    state->setRenderingHint(osg::StateSet::OPAQUE_BIN);
    geode->addDrawable(_drawPixels.get());
    _offsetTransform->addChild(geode.get());
    _textTransform->addChild(_offsetTransform.get());
}

void iPointQuote::rebuildGeometry()
{
    if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        _bits.clear();
        _image->setImage(0, 0, 1, GL_BGRA, GL_BGRA, GL_UNSIGNED_BYTE, nullptr, osg::Image::NO_DELETE, 1);
        return;
    }
    QRect r = QFontMetrics(QFont("Arial", 12)).boundingRect(QString::fromStdString(_text));
    int const width = r.width();
    int const height = r.height();
    _bits.assign(static_cast<std::size_t>(std::max(0, height)) * std::max(0, width) * 16, 0);
    QImage picture(_bits.data(), 2 * width, 2 * height, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    {
        QPainter painter(&picture);
        painter.setFont(QFont());
        int const a = static_cast<int>(std::lround(height * 0.5));
        r.adjust(-a, 0, 0, 0);
        int const b = static_cast<int>(std::lround(r.height() * 0.5));
        r.moveTo(2, 2);
        QPolygon flag;
        flag << QPoint(r.left(), r.top()) << QPoint(r.left() + a, r.top() + b) << QPoint(r.left() + a, r.bottom())
             << QPoint(r.right(), r.bottom()) << QPoint(r.right(), r.top());
        osg::Vec4f const c = getColor();
        painter.setPen(Qt::black);
        painter.setBrush(QBrush(QColor(int(c.r() * 255), int(c.g() * 255), int(c.b() * 255), int(c.a() * 255))));
        painter.drawPolygon(flag);
        r.adjust(a, 0, 0, 0);
        painter.drawText(r, Qt::AlignCenter, QString::fromStdString(_text));
    }
    _image->setImage(2 * width, 2 * height, 1, GL_BGRA, GL_BGRA, GL_UNSIGNED_BYTE, _bits.data(),
                     osg::Image::NO_DELETE, 1);
    _image->flipVertical();
    _offsetTransform->setPosition(osg::Vec3d(0.0, -2.0 * height, 0.0));
}
