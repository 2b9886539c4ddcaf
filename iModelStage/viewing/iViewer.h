#ifndef IMODELSTAGE_VIEWING_IVIEWER_H
#define IMODELSTAGE_VIEWING_IVIEWER_H

#include <iModelStage/model/NodeList.h>
#include <iModelStage/viewing/iBaseView.h>
#include <iModelStage/viewing/iOpenGLAdapterWidget.h>
#include <iModelStage/viewing/iRenderererMaskItem.h>
#include <iModelStage/viewing/iView.h>

#include <osg/BoundingBox>
#include <osg/ClipNode>
#include <osg/MatrixTransform>
#include <osg/Vec2f>
#include <osg/observer_ptr>
#include <osgGA/CameraManipulator>
#include <osgUtil/LineSegmentIntersector>
#include <osgUtil/PolytopeIntersector>
#include <osgViewer/Viewer>

#include <vector>

class QTimer;
class iCoordinateSystem;
class iGeometricGroup;
class iGridGroup;
class iInputPlane;
class iViewerBaseButton;
class iViewerButtonsLayout;

// The 3D view of a document: a widget with a GL surface, a view of one
// model and an OSG viewer, all in one object, so that the surface's paint,
// the model's signals and the frame land on the same object.
//
// The host constructs it, calls init once the widget has its size, binds a
// model with setViewModel and drives frames through iViewerManager. The
// scene under root is, in order: the view layer (world axis cross, grid),
// the UI layer (a screen-space camera with the axis triad and the on-screen
// buttons), the model's root, possibly inside a clip box, and four lights.
//
// Nine saved cameras, one per named lookup, remember where each lookup was
// left; switching between them animates unless switched off. The free
// lookup hands the camera to an orbit manipulator.
class IMODELSTAGE_EXPORT iViewer : public iOpenGLAdapterWidget, public iBaseView, public osgViewer::Viewer {
    Q_OBJECT
    I_CLASS(iViewer, iBaseView, 1)
public:
    enum iGridBevahior : unsigned int { iGridFollowIPlane = 1 };

    iViewer(QWidget* parent, Qt::WindowFlags f);
    ~iViewer() override;

    // Sets up camera, views, UI camera, buttons and masks, and registers
    // the viewer with the viewer manager. A second call does nothing.
    void init() override;
    void paintGL() override;
    void resizeGL(int width, int height) override;
    void mouseEnterEvent() override;
    void mouseLeaveEvent() override;

    // A null model empties the scene and keeps the model; a refused one
    // changes nothing.
    void setViewModel(iBaseModel* model) override;
    // Rebuilds root's children around node, with four new lights.
    void setSceneData(osg::Node* node) override;
    // The model root last given to setSceneData, while it lives.
    osg::Node* getSceneData();

    osg::Camera* getUICamera() { return m_uiCamera.get(); }
    osg::Group* getUILayer() { return m_uiLayer.get(); }
    osg::Group* getViewLayer() { return m_viewLayer.get(); }
    iViewerButtonsLayout* getButtonsLayout() { return m_buttonsLayout; }

    iGridGroup* getGrid();
    void setGrid(iGridGroup* grid);
    iGridBevahior getGridBevahior() const { return m_gridBehaviour; }
    void setGridBevahior(iGridBevahior behaviour) { m_gridBehaviour = behaviour; }
    // Moves the grid to the input plane in force, when the grid follows it.
    void updateGrid();

    // The explicit plane, else the current view's.
    iInputPlane* getIPlane();
    void setIPlane(iInputPlane* plane);
    void resetIPlane();

    iView& getCurrentView() { return m_views[m_currentLookup]; }
    iView::iViewLookup getCurrentViewLookup() const { return m_currentLookup; }
    // The saved camera of a lookup; out-of-range values give the current.
    iView& getView(iView::iViewLookup lookup);
    void setViewLookup(iView::iViewLookup lookup);
    void setLookupSwitchAnimate(bool on) { m_lookupAnimate = on; }
    bool getLookupSwitchAnimate() const { return m_lookupAnimate; }
    // Whether a lookup switch is still being animated.
    bool isLookupAnimating() const;

    void zoomBounds(NodeList const& nodes);
    virtual void setViewMatrix(osg::Matrixd const& view);

    void showGlobalAxis(bool on);
    bool isGlobalAxisVisible();
    bool lockInteractors(bool on);
    bool getLockInteractors() const { return m_lockInteractors; }
    void setViewerButtonsFlags(unsigned int flags);
    unsigned int getViewerButtonsFlags() const { return m_buttonsFlags; }
    iViewerBaseButton* getCapturedButton() const { return m_capturedButton; }
    iViewerBaseButton* getHoverButton() const { return m_hoverButton; }
    // Kept for the event handler: the button pressed and not yet released,
    // and the one under the pointer.
    void setCapturedButton(iViewerBaseButton* button) { m_capturedButton = button; }
    void setHoverButton(iViewerBaseButton* button) { m_hoverButton = button; }

    // Picking. Window positions are pixels from the bottom-left corner;
    // normalised positions run from -1 to 1 across the viewport.
    bool computeCameraLineIntersector(float x, float y, osg::Vec3f& start, osg::Vec3f& end);
    bool computeIPlaneIntersection(iCoordinateSystem const& cs, float x, float y, osg::Vec3f& point);
    bool getLineSegmentIntersections(osg::Vec2f const& p, osgUtil::LineSegmentIntersector::Intersections& out);
    // w and h are half sizes of the box, in pixels.
    bool getPolytotypeIntersections(osg::Vec2f const& p, double w, double h,
                                    osgUtil::PolytopeIntersector::Intersections& out);

    // Clip box: planes of a box placed by a matrix, cutting the model.
    bool isPointClipped(osg::Vec3f const& point);
    void setClipBoxData(osg::BoundingBox const& box, osg::Matrixd const& matrix);
    void setClipBoxEnabled(bool on);
    bool getClipBoxEnabled() const { return m_clipBoxEnabled; }
    osg::BoundingBox getClipBox() const { return m_clipBox; }
    osg::Matrixd getClipMatrix() const { return m_clipMatrix; }

    // Renderer masks: rows of node-mask bits the viewer shows or hides.
    bool addRendererMask(unsigned int mask, QString const& label, char const* optClass);
    bool setRendererMaskEnabled(unsigned int mask, bool on);
    bool isRendererMaskEnabled(unsigned int mask);
    bool isRendererMaskNodeEnabled(osg::Node* node);
    int isValidRendererMask(unsigned int mask);
    bool isValidRendererMaskNode(osg::Node* node);
    std::vector<iRenderererMaskItem> const& getRendererMaskItems() const { return m_rendererMasks; }

    void read(iInStream&, int) { }
    void write(iOutStream&) { }

    sigslot::signal0<> sigClipBoxChanged;
    sigslot::signal0<> sigIPlaneChanged;
    sigslot::signal0<> sigRendererMaskChanged;

    // The world axis cross, shared by every viewer.
    static osg::ref_ptr<osg::Geode> globalaxis;

public slots:
    void resetToHome();
    void zoomWindow(int x1, int y1, int x2, int y2);
    void pan(int x1, int y1, int x2, int y2);
    void zoomFactor(double f);
    void lookupAnimation();

    // Targets of the view buttons. The drag slots start, move and end a
    // navigation tool from a slider button; the others push a one-shot
    // tool.
    void slotPanInteractive(int x, int y);
    void slotRotateInteractive(int x, int y);
    void slotZoomInteractive(int x, int y);
    void slotPanInteractiveMoved(int x, int y, int dx, int dy);
    void slotRotateInteractiveMoved(int x, int y, int dx, int dy);
    void slotZoomInteractiveMoved(int x, int y, int dx, int dy);
    void slotPanInteractiveReleased();
    void slotRotateInteractiveReleased();
    void slotZoomInteractiveReleased();
    void slotZoomAll();
    void slotZoomSelected();
    void slotZoomWindow();

protected:
    bool event(QEvent* event) override;
    void renderingTraversals() override;

    void updateProjection(int width, int height);
    void updateViewMatrix();
    void startLookupSwithAnimation();
    void createViewButtons();
    void connectViewButtons();
    // Draws the clip box as a wire into the clip geometry transform, which
    // a derived viewer creates and places.
    void rebuildClipBoxGeometry();
    osg::ref_ptr<osg::MatrixTransform>& clipGeometry() { return m_clipGeometry; }

    static void setupGlobalAxis(iViewer* viewer);

private:
    osg::Node* processClipBox(osg::Node* node);
    void reapplySceneData();
    void buildAndSetRendererMask();
    void applyProjection();
    void finishLookupSwitch(iView::iViewLookup lookup);
    void handOverToManipulator();
    void addLights();
    void startDragTool(char const* className, int x, int y);
    void moveDragTool(int x, int y, int dx, int dy);
    void endDragTool(char const* className);

    bool m_initialized = false;
    osg::observer_ptr<osg::Node> m_sceneData;
    bool m_clipBoxEnabled = false;
    osg::ref_ptr<osg::MatrixTransform> m_clipGeometry;
    osg::BoundingBox m_clipBox;
    osg::Matrixd m_clipMatrix;
    osg::ref_ptr<osg::ClipNode> m_clipNode;
    iView m_views[9];
    iView::iViewLookup m_currentLookup = iView::iLookupAxonometric;
    osg::ref_ptr<osgGA::CameraManipulator> m_cameraManipulator;
    osg::ref_ptr<osg::Camera> m_uiCamera;
    osg::ref_ptr<osg::Group> m_root;
    osg::ref_ptr<osg::Group> m_uiLayer;
    osg::ref_ptr<osg::Group> m_viewLayer;
    osg::ref_ptr<iInputPlane> m_explicitPlane;
    iViewerBaseButton* m_viewButtons[6] = {nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
    unsigned int m_buttonsFlags = 0;
    QTimer* m_lookupTimer = nullptr;
    double m_animationParameter = 0.0;
    bool m_lookupAnimate = true;
    iView::iViewLookup m_previousLookup = iView::iLookupAxonometric;
    iView::iViewLookup m_nextLookup = iView::iLookupAxonometric;
    iViewState m_animationStart;
    iViewState m_animationTarget;
    iGridBevahior m_gridBehaviour = iGridFollowIPlane;
    osg::ref_ptr<iGridGroup> m_grid;
    bool m_lockInteractors = false;
    std::vector<iRenderererMaskItem> m_rendererMasks;
    unsigned int m_cullMask = 1;
    osg::ref_ptr<osg::Group> m_screenAxisGroup;
    osg::ref_ptr<osg::Group> m_globalAxisGroup;
    iViewerButtonsLayout* m_buttonsLayout = nullptr;
    iViewerBaseButton* m_capturedButton = nullptr;
    iViewerBaseButton* m_hoverButton = nullptr;
};

#endif
