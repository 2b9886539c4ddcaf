#ifndef IMODELSTAGE_VIEWING_IVIEWERBASEBUTTON_H
#define IMODELSTAGE_VIEWING_IVIEWERBASEBUTTON_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/frame/iSlot.h>

#include <QImage>

#include <osg/Image>
#include <osg/PositionAttitudeTransform>
#include <osg/Texture2D>
#include <osg/Vec2i>

class iViewer;

// An on-screen button of a viewer: a textured quad in the viewer's UI
// camera, placed in pixels from the bottom-left corner. It grows a little
// while hovered and pressed; its action is sigReleased.
class IMODELSTAGE_EXPORT iViewerBaseButton : public iSlot, public osg::PositionAttitudeTransform {
public:
    iViewerBaseButton(iViewer* viewer, QImage const& image);

    virtual void mousePressEvent(int button, osg::Vec2i const& at);
    virtual void mouseReleaseEvent(int button, osg::Vec2i const& at);
    virtual void mouseMoveEvent(osg::Vec2i const& at);
    virtual void mouseEnterEvent(osg::Vec2i const& at);
    virtual void mouseLeaveEvent(osg::Vec2i const& at);

    bool getVisible() const { return m_visible; }
    void setVisible(bool on);
    int getX() const { return m_x; }
    int getY() const { return m_y; }
    osg::Vec2i getPosition() const { return osg::Vec2i(m_x, m_y); }
    void setPosition(osg::Vec2i const& at);
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }
    iViewer* getViewer() const { return m_viewer; }

    sigslot::signal0<> sigPressed;
    sigslot::signal0<> sigReleased;
    sigslot::signal0<> sigVisibilityChanged;

protected:
    ~iViewerBaseButton() override = default;

    virtual void updateGeometry();

private:
    iViewer* m_viewer;
    bool m_visible = true;
    osg::ref_ptr<osg::Image> m_image;
    osg::ref_ptr<osg::Texture2D> m_texture;
    int m_x = 0;
    int m_y = 0;
    int m_width = 24;
    int m_height = 24;
};

#endif
