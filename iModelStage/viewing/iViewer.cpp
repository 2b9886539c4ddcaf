#include <iModelStage/viewing/iViewer.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGridGroup.h>
#include <iModelStage/geometry/iInputPlane.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/viewing/iViewerButton.h>
#include <iModelStage/viewing/iViewerSliderButton.h>
#include <iModelStage/viewing/iViewerButtonsLayout.h>
#include <iModelStage/viewing/iViewerManager.h>

#include <QCoreApplication>
#include <QEvent>

#include <osg/Geode>
#include <osg/LightSource>
#include <osg/LineWidth>
#include <osg/PositionAttitudeTransform>
#include <osgGA/TrackballManipulator>
#include <osgText/Text>
#include <osgViewer/ViewerEventHandlers>

I_REGISTER_CLASS(iViewer)

osg::ref_ptr<osg::Geode> iViewer::globalaxis;

namespace {

double const axonometricTilt = 1.2217304763960306;
osg::Vec3d const screenAxisPosition(40.0, 40.0, -100.0);

// The axis triad of the screen corner, shared by every viewer. It lives to
// the end of the process: the extra reference keeps it from being freed
// while static objects of the scene library are torn down.
osg::ref_ptr<iGeometricGroup>& screenaxis()
{
    static osg::ref_ptr<iGeometricGroup> triad;
    return triad;
}

// The parts of a class-wide axis object are never freed.
template <class T>
T* immortal(T* object)
{
    object->ref();
    return object;
}

osgText::Text* axisLabel(char const* text, osg::Vec3 const& at, float size,
                         osgText::TextBase::AlignmentType alignment)
{
    auto* label = new osgText::Text;
    label->setCharacterSize(size);
    label->setCharacterSizeMode(osgText::TextBase::SCREEN_COORDS);
    label->setFont("fonts/tahoma.ttf");
    label->setColor(osg::Vec4(1.0f, 1.0f, 1.0f, 1.0f));
    label->setAlignment(alignment);
    label->setAxisAlignment(osgText::TextBase::SCREEN);
    label->setPosition(at);
    label->setText(text);
    return label;
}

// Lines between vertex pairs (0, 1), (2, 3) ... or from vertex 0 to each
// other vertex, coloured per line.
osg::Geometry* axisLines(osg::Vec3Array* vertices, osg::Vec4Array* colors, bool fromOrigin)
{
    auto* geometry = new osg::Geometry;
    geometry->setVertexArray(vertices);
    for (unsigned int i = 0; i < 3; ++i) {
        auto* line = new osg::DrawElementsUShort(GL_LINES);
        line->push_back(fromOrigin ? 0 : static_cast<unsigned short>(2 * i));
        line->push_back(fromOrigin ? static_cast<unsigned short>(i + 1) : static_cast<unsigned short>(2 * i + 1));
        geometry->addPrimitiveSet(line);
    }
    geometry->setColorArray(colors, osg::Array::BIND_PER_PRIMITIVE_SET);
    return geometry;
}

osg::Vec4Array* colors(osg::Vec4 const& a, osg::Vec4 const& b, osg::Vec4 const& c)
{
    auto* array = new osg::Vec4Array;
    array->push_back(a);
    array->push_back(b);
    array->push_back(c);
    return array;
}

osg::Vec4 const red(1.0f, 0.0f, 0.0f, 1.0f);
osg::Vec4 const green(0.0f, 1.0f, 0.0f, 1.0f);
osg::Vec4 const blue(0.0f, 0.0f, 1.0f, 1.0f);

void buildScreenAxis()
{
    osg::ref_ptr<iGeometricGroup> triad = immortal(new iGeometricGroup);
    auto* geode = new osg::Geode;
    auto* vertices = new osg::Vec3Array;
    vertices->push_back(osg::Vec3(0, 0, 0));
    vertices->push_back(osg::Vec3(40, 0, 0));
    vertices->push_back(osg::Vec3(0, 40, 0));
    vertices->push_back(osg::Vec3(0, 0, 40));
    // Y blue and Z green: the reverse of the world cross.
    geode->addDrawable(axisLines(vertices, colors(red, blue, green), true));
    osgText::TextBase::AlignmentType const align = osgText::TextBase::CENTER_BOTTOM_BASE_LINE;
    osgText::Text* labels[3] = {axisLabel("X", osg::Vec3(40, 0, 0), 22.0f, align),
                                axisLabel("Y", osg::Vec3(0, 40, 0), 22.0f, align),
                                axisLabel("Z", osg::Vec3(0, 0, 40), 22.0f, align)};
    for (osgText::Text* label : labels) {
        label->setBackdropType(osgText::Text::DROP_SHADOW_BOTTOM_RIGHT);
        geode->addDrawable(label);
    }
    triad->addChild(geode);
    triad->osg::PositionAttitudeTransform::setPosition(screenAxisPosition);
    screenaxis() = triad;
}

osg::Geode* buildGlobalAxis()
{
    osg::Geode* geode = immortal(new osg::Geode);
    osg::StateSet* state = geode->getOrCreateStateSet();
    state->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    state->setMode(GL_BLEND, osg::StateAttribute::PROTECTED);
    state->setMode(GL_DEPTH_TEST, osg::StateAttribute::PROTECTED);
    state->setAttributeAndModes(new osg::LineWidth(1.0f));
    state->setRenderBinDetails(1, "RenderBin", osg::StateSet::USE_RENDERBIN_DETAILS);

    auto* vertices = new osg::Vec3Array;
    float const ends[6][3] = {{-20, 0, 0}, {20, 0, 0}, {0, -20, 0}, {0, 20, 0}, {0, 0, -20}, {0, 0, 20}};
    char const* const names[6] = {"-X", "+X", "-Y", "+Y", "-Z", "+Z"};
    for (int i = 0; i < 6; ++i) {
        osg::Vec3 const at(ends[i][0], ends[i][1], ends[i][2]);
        vertices->push_back(at);
        geode->addDrawable(axisLabel(names[i], at, 20.0f, osgText::TextBase::LEFT_CENTER));
    }
    geode->addDrawable(axisLines(vertices, colors(red, green, blue), false));
    return geode;
}

} // namespace

iViewer::iViewer(QWidget* parent, Qt::WindowFlags f)
    : iOpenGLAdapterWidget(parent),
      iBaseView(),
      osgViewer::Viewer(),
      m_clipBox(-6000000.0f, -6000000.0f, -6000000.0f, 6000000.0f, 6000000.0f, 6000000.0f)
{
    if (f != Qt::WindowFlags())
        setWindowFlags(f);
    m_buttonsLayout = new iViewerButtonsLayout(this);
    m_screenAxisGroup = new osg::Group;
    m_globalAxisGroup = new osg::Group;
    iNodeGroup::setNodeFlag(m_screenAxisGroup.get(), 1, false);
    iNodeGroup::setNodeFlag(m_globalAxisGroup.get(), 1, false);

    m_root = new osg::Group;
    m_uiLayer = new osg::Group;
    m_viewLayer = new osg::Group;
    iNodeGroup::setNodeFlag(m_viewLayer.get(), 1, false);
    m_root->addChild(m_viewLayer.get());
    m_root->addChild(m_uiLayer.get());
    osgViewer::Viewer::setSceneData(m_root.get());
}

iViewer::~iViewer()
{
    if (m_lookupTimer)
        m_lookupTimer->stop();
    // The scene library frees this context's GL objects as its viewer
    // goes; they must be freed in the right context.
    makeGLCurrent();
    delete m_buttonsLayout;
    m_buttonsLayout = nullptr;
}

void iViewer::init()
{
    if (m_initialized)
        return;
    m_initialized = true;
    initGL();

    auto* stats = new osgViewer::StatsHandler;
    stats->setKeyEventTogglesOnScreenStats(osgGA::GUIEventAdapter::KEY_F12);
    addEventHandler(stats);
    setKeyEventSetsDone(0);

    for (int lookup = iView::iLookupLeft; lookup <= iView::iLookupAxonometric; ++lookup)
        m_views[lookup].setViewLookup(static_cast<iView::iViewLookup>(lookup));

    iViewState& axonometric = m_views[iView::iLookupAxonometric].getState();
    axonometric.setLeft(-10.0);
    axonometric.setTop(10.0);
    axonometric.setRight(10.0);
    axonometric.setBottom(-10.0);
    float const* basis = axonometric.getLookupBasis();
    osg::Matrixd const inverseView = osg::Matrixd::translate(basis[0], basis[1], basis[2]) *
                                     osg::Matrixd::rotate(axonometricTilt, osg::Vec3d(1.0, 0.0, 0.0)) *
                                     osg::Matrixd::rotate(-osg::PI_4, osg::Vec3d(0.0, 0.0, 1.0));
    axonometric.setViewMatrices(osg::Matrixd::inverse(inverseView), inverseView);
    m_views[iView::iLookupAxonometric].saveAsHome();

    m_views[iView::iLookupFree].setProjectionType(iView::iProjectionPerspective);
    m_views[iView::iLookupLast].setViewLookup(iView::iLookupLast);

    osg::Camera* camera = getCamera();
    camera->setViewport(0, 0, width(), height());
    camera->setGraphicsContext(getGraphicsWindow());
    camera->setClearColor(iViewerManager::readBackgroundColor());
    camera->setDrawBuffer(GL_BACK);
    camera->setReadBuffer(GL_BACK);

    m_cameraManipulator = new osgGA::TrackballManipulator;
    m_cameraManipulator->setAutoComputeHomePosition(false);
    m_cameraManipulator->setHomePosition(osg::Vec3d(-8.0, -25.0, 12.0), osg::Vec3d(0.0, 0.0, 0.0),
                                         osg::Vec3d(0.0, 0.0, 1.0), false);
    m_cameraManipulator->home(0.0);

    setViewLookup(iView::iLookupTop);

    m_uiCamera = new osg::Camera;
    osg::Viewport const* viewport = camera->getViewport();
    int const w = static_cast<int>(viewport->width());
    int const h = static_cast<int>(viewport->height());
    m_uiCamera->setViewport(static_cast<int>(viewport->x()), static_cast<int>(viewport->y()), w, h);
    m_uiCamera->setProjectionMatrix(osg::Matrixd::ortho2D(0.0, w, 0.0, h));
    m_uiCamera->setReferenceFrame(osg::Transform::ABSOLUTE_RF);
    m_uiCamera->setViewMatrix(osg::Matrixd::identity());
    m_uiCamera->setClearMask(GL_DEPTH_BUFFER_BIT);
    m_uiCamera->setRenderOrder(osg::Camera::POST_RENDER, 0);
    m_uiCamera->setAllowEventFocus(false);
    osg::StateSet* uiState = m_uiCamera->getOrCreateStateSet();
    uiState->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
    uiState->setAttributeAndModes(new osg::LineWidth(2.0f), osg::StateAttribute::ON);

    if (!screenaxis().valid())
        buildScreenAxis();
    m_screenAxisGroup->addChild(screenaxis().get());
    m_uiCamera->addChild(m_screenAxisGroup.get());
    m_uiLayer->addChild(m_uiCamera.get());

    createViewButtons();
    m_buttonsFlags = 0xFFFFFFFFu;
    for (iViewerBaseButton* button : m_viewButtons)
        if (button)
            button->setVisible(true);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopLeft, true);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopRight, true);

    setThreadingModel(SingleThreaded);
    addRendererMask(1, iTranslate("Geometrie"), "");
    setupGlobalAxis(this);

    if (!iViewerManager::getInstance())
        new iViewerManager(QCoreApplication::instance());
    iViewerManager::getInstance()->addViewer(this);
}

void iViewer::setupGlobalAxis(iViewer* viewer)
{
    if (!globalaxis.valid())
        globalaxis = buildGlobalAxis();
    if (!viewer)
        return;
    viewer->m_globalAxisGroup->addChild(globalaxis.get());
    viewer->m_viewLayer->addChild(viewer->m_globalAxisGroup.get());
}

void iViewer::paintGL()
{
    if (isVisible())
        frame(USE_REFERENCE_TIME);
}

void iViewer::renderingTraversals()
{
    if (iGeometricGroup* triad = screenaxis().get()) {
        triad->osg::PositionAttitudeTransform::setPosition(screenAxisPosition);
        triad->setAttitude(getCamera()->getViewMatrix().getRotate());
    }
    osgViewer::Viewer::renderingTraversals();
}

void iViewer::resizeGL(int width, int height)
{
    iOpenGLAdapterWidget::resizeGL(width, height);
    if (width == 0 || height == 0)
        return;
    getCamera()->setViewport(0, 0, width, height);
    updateProjection(width, height);
    getCamera()->setProjectionMatrix(getCurrentView().getState().getProjectionMatrix());
    if (m_uiCamera.valid()) {
        m_uiCamera->setViewport(0, 0, width, height);
        m_uiCamera->setProjectionMatrix(osg::Matrixd::ortho2D(0.0, width, 0.0, height));
    }
    if (m_buttonsLayout)
        m_buttonsLayout->relayout();
}

bool iViewer::event(QEvent* event)
{
    if (event->type() == QEvent::Show)
        setAcceptDrops(true);
    return iOpenGLAdapterWidget::event(event);
}

void iViewer::mouseEnterEvent()
{
    bool const show = m_buttonsFlags != 0 && !getCurrentView().isPerspective();
    m_buttonsLayout->setAllButtonsVisible(show);
}

void iViewer::mouseLeaveEvent()
{
    m_buttonsLayout->setAllButtonsVisible(false);
}

void iViewer::setViewModel(iBaseModel* model)
{
    if (model && !canSetModel(model))
        return;
    iBaseView::setViewModel(model);
    setSceneData(model ? model->getRoot() : nullptr);
}

osg::Node* iViewer::getSceneData()
{
    return m_sceneData.get();
}

void iViewer::setSceneData(osg::Node* node)
{
    m_root->removeChildren(0, m_root->getNumChildren());
    m_root->addChild(m_viewLayer.get());
    m_root->addChild(m_uiLayer.get());
    m_sceneData = node;
    if (node)
        m_root->addChild(processClipBox(node));
    addLights();
    osgViewer::Viewer::setSceneData(m_root.get());
}

void iViewer::addLights()
{
    osg::Vec3d const positions[4] = {
        osg::Vec3d(0, 0, 200), osg::Vec3d(0, 0, -200), osg::Vec3d(-200, 0, 0), osg::Vec3d(200, 0, 200)};
    osg::StateSet* rootState = m_root->getOrCreateStateSet();
    for (int i = 0; i < 4; ++i) {
        auto* light = new osg::Light;
        light->setLightNum(i + 1);
        light->setPosition(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
        light->setDiffuse(osg::Vec4(0.45f, 0.45f, 0.45f, 1.0f));
        light->setSpecular(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
        light->setAmbient(osg::Vec4(0.0f, 0.0f, 0.0f, 1.0f));
        auto* source = new osg::LightSource;
        source->setLight(light);
        source->setLocalStateSetModes(osg::StateAttribute::ON);
        source->setStateSetModes(*rootState, osg::StateAttribute::ON);
        auto* place = new osg::PositionAttitudeTransform;
        place->setPosition(positions[i]);
        place->addChild(source);
        m_root->addChild(place);
    }
}

void iViewer::showGlobalAxis(bool on)
{
    iNodeGroup::setNodeFlag(m_globalAxisGroup.get(), 0, on);
    iNodeGroup::setNodeFlag(m_screenAxisGroup.get(), 0, on);
}

bool iViewer::isGlobalAxisVisible()
{
    return iNodeGroup::getNodeFlags(m_globalAxisGroup.get()).test(0);
}

bool iViewer::lockInteractors(bool on)
{
    bool const before = m_lockInteractors;
    m_lockInteractors = on;
    return before;
}

iGridGroup* iViewer::getGrid()
{
    return m_grid.get();
}

void iViewer::setGrid(iGridGroup* grid)
{
    if (m_grid.valid())
        m_viewLayer->removeChild(m_grid.get());
    m_grid = grid;
    if (m_grid.valid())
        m_viewLayer->addChild(m_grid.get());
    updateGrid();
}

void iViewer::updateGrid()
{
    if (!m_grid.valid() || m_gridBehaviour != iGridFollowIPlane)
        return;
    if (iInputPlane* plane = getIPlane())
        m_grid->setMatrix(plane->getMatrix());
}

iInputPlane* iViewer::getIPlane()
{
    return m_explicitPlane.valid() ? m_explicitPlane.get() : getCurrentView().getInputPlane();
}

void iViewer::setIPlane(iInputPlane* plane)
{
    m_explicitPlane = plane;
    updateGrid();
    sigIPlaneChanged();
}

void iViewer::resetIPlane()
{
    setIPlane(nullptr);
}

namespace {

struct ViewButtonRow {
    char const* image;
    bool slider;
    iViewerButtonsLayout::iViewerButtonPos pos;
    unsigned int flag;
};

ViewButtonRow const viewButtonRows[6] = {
    {":/images/viewer/zoom_limits.png", false, iViewerButtonsLayout::iButtonsTopLeft, 32},
    {":/images/viewer/zoom_selected.png", false, iViewerButtonsLayout::iButtonsTopLeft, 64},
    {":/images/viewer/zoom_window.png", false, iViewerButtonsLayout::iButtonsTopLeft, 128},
    {":/images/viewer/pan.png", true, iViewerButtonsLayout::iButtonsTopRight, 4},
    {":/images/viewer/view_orbit.png", true, iViewerButtonsLayout::iButtonsTopRight, 8},
    {":/images/viewer/zoom.png", true, iViewerButtonsLayout::iButtonsTopRight, 16},
};

} // namespace

void iViewer::createViewButtons()
{
    for (int i = 0; i < 6; ++i) {
        ViewButtonRow const& row = viewButtonRows[i];
        QImage const image(QString::fromLatin1(row.image));
        iViewerBaseButton* button = row.slider ? static_cast<iViewerBaseButton*>(new iViewerSliderButton(this, image))
                                               : new iViewerButton(this, image);
        m_viewButtons[i] = button;
        m_buttonsLayout->addButton(button, row.pos);
    }
    connectViewButtons();
    m_buttonsFlags = 0;
    for (iViewerBaseButton* button : m_viewButtons)
        button->setVisible(false);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopLeft, false);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopRight, false);
}

void iViewer::setViewerButtonsFlags(unsigned int flags)
{
    m_buttonsFlags = flags;
    for (int i = 0; i < 6; ++i)
        if (m_viewButtons[i])
            m_viewButtons[i]->setVisible((flags & viewButtonRows[i].flag) != 0);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopLeft, flags != 0);
    m_buttonsLayout->setButtonsVisible(iViewerButtonsLayout::iButtonsTopRight, flags != 0);
}
