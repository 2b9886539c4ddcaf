#include <iModelStage/viewing/iScreenShotHandler.h>

#include <iModelStage/viewing/iViewer.h>

#include <OpenThreads/ScopedLock>
#include <osg/GraphicsContext>

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>
#include <QOpenGLFunctions>

#include <iostream>

iScreenShotHandler::CustomRenderer::CustomRenderer(osg::Camera* camera) : osgViewer::Renderer(camera) {}

iScreenShotHandler::CustomRenderer::~CustomRenderer() = default;

void iScreenShotHandler::CustomRenderer::operator()(osg::GraphicsContext* context)
{
    if (_cullAndDraw && getSceneView(0)) {
        cull_draw();
        return;
    }
    osgViewer::Renderer::operator()(context);
}

iScreenShotHandler::WindowCaptureCallback::WindowCaptureCallback(osg::GraphicsContext* context, osg::Image* image)
    : _readBuffer(GL_FRONT), _image(image)
{
    if (context && context->getTraits() && context->getTraits()->doubleBuffer)
        _readBuffer = GL_BACK;
}

iScreenShotHandler::WindowCaptureCallback::~WindowCaptureCallback() = default;

void iScreenShotHandler::WindowCaptureCallback::operator()(osg::RenderInfo& renderInfo) const
{
    QOpenGLContext* current = QOpenGLContext::currentContext();
    if (!current)
        return;
    // The embedded window's traits do not know the surface's buffering:
    // the surface format of the current context does.
    GLenum const readBuffer =
        current->format().swapBehavior() == QSurfaceFormat::DoubleBuffer ? GLenum(GL_BACK) : _readBuffer;
    OpenThreads::ScopedLock<OpenThreads::Mutex> lock(_mutex);
    osg::GraphicsContext* context = renderInfo.getState() ? renderInfo.getState()->getGraphicsContext() : nullptr;
    osg::GraphicsContext::Traits const* traits = context ? context->getTraits() : nullptr;
    if (!traits || !_image)
        return;
    // The read buffer is put back, so that later reads of the frame see
    // what they saw before.
    QOpenGLFunctions* gl = current->functions();
    GLint previousReadBuffer = GL_BACK;
    gl->glGetIntegerv(GL_READ_BUFFER, &previousReadBuffer);
    current->extraFunctions()->glReadBuffer(readBuffer);
    GLenum const format = traits->alpha ? GL_RGBA : GL_RGB;
    std::cout << "Capture: size=" << traits->width << "x" << traits->height
              << ", format=" << (format == GL_RGBA ? "GL_RGBA" : "GL_RGB") << std::endl;
    _image->allocateImage(traits->width, traits->height, 1, format, GL_UNSIGNED_BYTE, 1);
    GLint alignment = 4;
    gl->glGetIntegerv(GL_PACK_ALIGNMENT, &alignment);
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
    gl->glReadPixels(0, 0, traits->width, traits->height, format, GL_UNSIGNED_BYTE, _image->data());
    gl->glPixelStorei(GL_PACK_ALIGNMENT, alignment);
    current->extraFunctions()->glReadBuffer(GLenum(previousReadBuffer));
}

iScreenShotHandler::iScreenShotHandler(iViewer* viewer) : _viewer(viewer)
{
    osg::Camera* camera = _viewer->getCamera();
    _previousRenderer = camera->getRenderer();
    camera->setRenderer(new CustomRenderer(camera));
}

iScreenShotHandler::~iScreenShotHandler()
{
    _viewer->getCamera()->setRenderer(_previousRenderer.get());
}

void iScreenShotHandler::capture(osg::Image* image)
{
    osg::Camera* camera = _viewer->getCamera();
    osg::ref_ptr<WindowCaptureCallback> callback = new WindowCaptureCallback(camera->getGraphicsContext(), image);
    camera->setFinalDrawCallback(callback.get());
    static_cast<osgViewer::ViewerBase*>(_viewer)->renderingTraversals();
    camera->setFinalDrawCallback(nullptr);
}
