#include <iModelStage/viewing/iViewerShotIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iImageGroup.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>
#include <iModelStage/viewing/iScreenShotHandler.h>
#include <iModelStage/viewing/iViewer.h>

#include <QDateTime>
#include <QDir>
#include <QImage>

#include <osg/BlendFunc>
#include <osg/Geode>
#include <osgFX/Scribe>

#include <algorithm>

I_REGISTER_CLASS(iViewerShotIA)
I_REGISTER_PROPERTY(iViewerShotIA, iColor4, color, "General")
I_REGISTER_PROPERTY_AS(iViewerShotIA, std::string, "std::string", destpath, "General")
I_REGISTER_PROPERTY_AS(iViewerShotIA, std::string, "std::string", imgname, "General")
I_REGISTER_PROPERTY_AS(iViewerShotIA, std::string, "std::string", suffix, "General")
I_REGISTER_PROPERTY(iViewerShotIA, int, left, "General")
I_REGISTER_PROPERTY(iViewerShotIA, int, top, "General")
I_REGISTER_PROPERTY(iViewerShotIA, int, right, "General")
I_REGISTER_PROPERTY(iViewerShotIA, int, bottom, "General")
I_REGISTER_PROPERTY(iViewerShotIA, bool, sfondo, "General")

int iViewerShotIA::s_counter = 0;

iViewerShotIA::iViewerShotIA()
{
    _destpath = QDir::homePath().toStdString();
    QString const name = QString::fromUtf8(iTranslate("Immagine_%1")).arg(s_counter++) + "_" +
                         QDateTime::currentDateTime().toString("dd.MM.yyyy.hh.mm");
    _imgname = name.toStdString();
    _suffix = ".png";
    _sfondo = true;
    _color = iColor4(1.0f, 1.0f, 1.0f, 1.0f);
}

iViewerShotIA::~iViewerShotIA() = default;

void iViewerShotIA::start()
{
    iInteractor::start();
    sigsfondoChanged.connect(this, &iViewerShotIA::slotsfondoChanged);
    sigcolorChanged.connect(this, &iViewerShotIA::slotcolorChanged);
    iViewer* viewer = getViewer();
    if (viewer) {
        _savedGrid = viewer->getGrid();
        _savedClearColor = viewer->getCamera()->getClearColor();
        _savedAxisVisible = viewer->isGlobalAxisVisible();
        _saved = true;
        buildRubberBand(viewer);
    }
    updateBackground(_sfondo);
}

void iViewerShotIA::buildRubberBand(iViewer* viewer)
{
    osg::Viewport const* viewport = viewer->getCamera()->getViewport();
    double const width = viewport ? viewport->width() : 0.0;
    double const height = viewport ? viewport->height() : 0.0;
    _rubberCamera = new osg::Camera;
    _rubberCamera->setProjectionMatrix(osg::Matrixd::ortho2D(0.0, width, 0.0, height));
    _rubberCamera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    _rubberCamera->setViewMatrix(osg::Matrixd::identity());
    _rubberCamera->setClearMask(GL_DEPTH_BUFFER_BIT);
    _rubberCamera->setRenderOrder(osg::Camera::POST_RENDER);
    _rubberCamera->setAllowEventFocus(false);
    osg::StateSet* state = _rubberCamera->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_BLEND, 3);

    _vertices = new osg::Vec3Array(4);
    _rubberBand = new osg::Geometry;
    _rubberBand->setVertexArray(_vertices.get());
    _rubberBand->addPrimitiveSet(new osg::DrawArrays(GL_QUADS, 0, 4));
    osg::ref_ptr<osg::Vec4Array> colours = new osg::Vec4Array;
    colours->push_back(osg::Vec4(0.9f, 0.1f, 0.0f, 0.3f));
    _rubberBand->setColorArray(colours.get(), osg::Array::BIND_OVERALL);
    _rubberBand->setUseDisplayList(false);
    osg::ref_ptr<osg::Geode> geode = new osg::Geode;
    geode->addDrawable(_rubberBand.get());
    osg::ref_ptr<osgFX::Scribe> scribe = new osgFX::Scribe;
    scribe->setWireframeColor(osg::Vec4(0.7f, 0.7f, 0.7f, 0.3f));
    scribe->addChild(geode.get());
    _rubberCamera->addChild(scribe.get());
    viewer->getViewLayer()->addChild(_rubberCamera.get());
}

void iViewerShotIA::updateBackground(bool on)
{
    iViewer* viewer = getViewer();
    if (!viewer)
        return;
    if (!on) {
        restoreViewer();
        return;
    }
    osg::ref_ptr<iGridGroup> plain = new iGridGroup;
    plain->set_planevisible(false);
    plain->set_gridvisible(false);
    plain->set_axisvisible(false);
    plain->set_bg(_color);
    viewer->setGrid(plain.get());
    viewer->getCamera()->setClearColor(_color);
    viewer->showGlobalAxis(false);
}

void iViewerShotIA::restoreViewer()
{
    iViewer* viewer = getViewer();
    if (!viewer || !_saved)
        return;
    viewer->setGrid(_savedGrid.get());
    viewer->getCamera()->setClearColor(_savedClearColor);
    viewer->showGlobalAxis(_savedAxisVisible);
}

void iViewerShotIA::slotcolorChanged(iRoot*, iColor4)
{
    updateBackground(_sfondo);
}

void iViewerShotIA::slotsfondoChanged(iRoot*, bool)
{
    updateBackground(_sfondo);
}

void iViewerShotIA::setRubberBand(osg::Vec3f const& a, osg::Vec3f const& b)
{
    if (!_vertices.valid())
        return;
    (*_vertices)[0] = osg::Vec3f(a.x(), b.y(), 0.0f);
    (*_vertices)[1] = osg::Vec3f(b.x(), b.y(), 0.0f);
    (*_vertices)[2] = osg::Vec3f(b.x(), a.y(), 0.0f);
    (*_vertices)[3] = osg::Vec3f(a.x(), a.y(), 0.0f);
    _vertices->dirty();
    _rubberBand->dirtyBound();
}

bool iViewerShotIA::click(iIAPoint const& p)
{
    iInteractor::click(p);
    if (getCurrentStep() != 0)
        return true;
    osg::Vec3f const& w = p.getWindowPos();
    setRubberBand(w, w);
    setCurrentStep(getCurrentStep() + 1);
    _anchor = w;
    return true;
}

bool iViewerShotIA::move(iIAPoint const& p)
{
    bool const result = iInteractor::move(p);
    if (getCurrentStep() == 1)
        setRubberBand(_anchor, p.getWindowPos());
    return result;
}

bool iViewerShotIA::release(iIAPoint const& p)
{
    iInteractor::release(p);
    osg::Vec3f const& w = p.getWindowPos();
    float const l = std::min(_anchor.x(), w.x());
    float const r = std::max(_anchor.x(), w.x());
    float const b = std::min(_anchor.y(), w.y());
    float const t = std::max(_anchor.y(), w.y());
    iViewer* viewer = getViewer();
    float const h = viewer ? float(viewer->height()) : 0.0f;
    set_left(int(l));
    set_top(int(h - t));
    set_right(int(r));
    set_bottom(int(h - b));
    setCurrentStep(0);
    return true;
}

void iViewerShotIA::close()
{
    iViewer* viewer = getViewer();
    if (!_destpath.empty() && !_imgname.empty()) {
        restoreViewer();
        iNodeLayer* images = iLayersManager::getLayer("iImagesLayer");
        if (images && viewer) {
            setRubberBand(osg::Vec3f(), osg::Vec3f());
            viewer->makeGLCurrent();
            viewer->frame(USE_REFERENCE_TIME);
            viewer->swapGLBuffer();
            saveCapture(viewer);
            std::string const fileName = _destpath + "/" + _imgname + _suffix;
            osg::ref_ptr<iImageGroup> image = new iImageGroup;
            image->set_name(_imgname);
            image->set_filename(fileName);
            images->addObject(image.get(), false);
        }
    }
    removeRubberBand();
    restoreViewer();
    iInteractor::close();
}

void iViewerShotIA::saveCapture(iViewer* viewer)
{
    osg::ref_ptr<osg::Image> image = new osg::Image;
    {
        iScreenShotHandler handler(viewer);
        handler.capture(image.get());
    }
    if (!image->data())
        return;
    QImage const frame(image->data(), image->s(), image->t(), int(image->getRowSizeInBytes()),
                       QImage::Format_RGB888);
    QImage const part = frame.mirrored(false, true).copy(_left, _top, _right - _left, _bottom - _top);
    part.save(QString::fromStdString(_destpath + "/" + _imgname + _suffix), nullptr, -1);
}

void iViewerShotIA::removeRubberBand()
{
    iViewer* viewer = getViewer();
    if (viewer && _rubberCamera.valid())
        viewer->getViewLayer()->removeChild(_rubberCamera.get());
}

void iViewerShotIA::cancel()
{
    removeRubberBand();
    restoreViewer();
    iInteractor::cancel();
}
