#ifndef IMODELSTAGE_VIEWING_ISCREENSHOTHANDLER_H
#define IMODELSTAGE_VIEWING_ISCREENSHOTHANDLER_H

#include <iModelStage/frame/iExport.h>

#include <OpenThreads/Mutex>
#include <osg/Camera>
#include <osg/Image>
#include <osgViewer/Renderer>

class iViewer;

// One capture of a viewer's picture: while it lives, the main camera has
// a renderer that culls and draws in one call, so that the frame drawn by
// capture() is the one read back.
class IMODELSTAGE_EXPORT iScreenShotHandler {
public:
    class CustomRenderer : public osgViewer::Renderer {
    public:
        explicit CustomRenderer(osg::Camera* camera);

        void setCullAndDraw(bool on) { _cullAndDraw = on; }
        void operator()(osg::GraphicsContext* context) override;

    protected:
        ~CustomRenderer() override;

    private:
        bool _cullAndDraw = true;
    };

    // Reads the whole frame buffer into its image after the camera's draw.
    class WindowCaptureCallback : public osg::Camera::DrawCallback {
    public:
        WindowCaptureCallback(osg::GraphicsContext* context, osg::Image* image);

        void operator()(osg::RenderInfo& renderInfo) const override;

    protected:
        ~WindowCaptureCallback() override;

    private:
        unsigned int _readBuffer;
        osg::Image* _image;
        mutable OpenThreads::Mutex _mutex;
    };

    explicit iScreenShotHandler(iViewer* viewer);
    ~iScreenShotHandler();
    iScreenShotHandler(iScreenShotHandler const&) = delete;
    iScreenShotHandler& operator=(iScreenShotHandler const&) = delete;

    // Draws one frame and reads it into image.
    void capture(osg::Image* image);

private:
    iViewer* _viewer;
    osg::ref_ptr<osg::GraphicsOperation> _previousRenderer;
};

#endif
