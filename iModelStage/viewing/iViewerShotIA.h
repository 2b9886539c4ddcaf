#ifndef IMODELSTAGE_VIEWING_IVIEWERSHOTIA_H
#define IMODELSTAGE_VIEWING_IVIEWERSHOTIA_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/interaction/iInteractor.h>

#include <osg/Camera>
#include <osg/Geometry>

#include <string>

class iGridGroup;

// Drag a rectangle in a viewer; closing the tool saves that part of the
// view as an image file, which also enters the images layer. With sfondo
// on the picture has a plain background of colour `color` and no grid or
// axes.
class IMODELSTAGE_EXPORT iViewerShotIA : public iInteractor {
    I_CLASS(iViewerShotIA, iInteractor, 1)
    I_PROPERTY(std::string, destpath)
    I_PROPERTY(std::string, imgname)
    I_PROPERTY(std::string, suffix)
    I_PROPERTY(int, left)
    I_PROPERTY(int, top)
    I_PROPERTY(int, right)
    I_PROPERTY(int, bottom)
    I_PROPERTY(bool, sfondo)
    I_PROPERTY(iColor4, color)
public:
    iViewerShotIA();
    ~iViewerShotIA() override;

    void start() override;
    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void cancel() override;
    void close() override;

    void updateBackground(bool on);
    void slotcolorChanged(iRoot* source, iColor4 color);
    void slotsfondoChanged(iRoot* source, bool on);

private:
    void buildRubberBand(iViewer* viewer);
    void setRubberBand(osg::Vec3f const& a, osg::Vec3f const& b);
    void removeRubberBand();
    void restoreViewer();
    void saveCapture(iViewer* viewer);

    osg::ref_ptr<osg::Geometry> _rubberBand;
    osg::ref_ptr<osg::Vec3Array> _vertices;
    osg::ref_ptr<osg::Camera> _rubberCamera;
    osg::ref_ptr<iGridGroup> _savedGrid;
    osg::Vec4 _savedClearColor;
    bool _savedAxisVisible = true;
    bool _saved = false;
    osg::Vec3f _anchor;

    static int s_counter;
};

#endif
