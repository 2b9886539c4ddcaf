// The viewer's camera motion: lookups, their animated switch, projection,
// pan and zoom.
#include <iModelStage/viewing/iViewer.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Plane>

#include <QTimer>

#include <algorithm>
#include <cmath>

namespace {

int const lookupTickMilliseconds = 15;
double const lookupTickStep = 0.125;

bool validLookup(int lookup)
{
    return lookup >= iView::iLookupLeft && lookup <= iView::iLookupLast;
}

// View, projection and, when there is one, the viewport's window matrix.
osg::Matrixd cameraToWindow(osg::Camera const* camera)
{
    osg::Matrixd m = camera->getViewMatrix() * camera->getProjectionMatrix();
    if (camera->getViewport())
        m.postMult(camera->getViewport()->computeWindowMatrix());
    return m;
}

double roundHalfAway(double value)
{
    return value < 0.0 ? -std::floor(-value + 0.5) : std::floor(value + 0.5);
}

} // namespace

iView& iViewer::getView(iView::iViewLookup lookup)
{
    return validLookup(lookup) ? m_views[lookup] : getCurrentView();
}

bool iViewer::isLookupAnimating() const
{
    return m_lookupTimer && m_lookupTimer->isActive();
}

void iViewer::applyProjection()
{
    updateProjection(width(), height());
    getCamera()->setProjectionMatrix(getCurrentView().getState().getProjectionMatrix());
}

void iViewer::handOverToManipulator()
{
    if (!m_cameraManipulator.valid())
        return;
    // Installing the manipulator sends it home; the matrix read before
    // puts it back where it was.
    osg::Matrixd const inverse = m_cameraManipulator->getInverseMatrix();
    setCameraManipulator(m_cameraManipulator.get(), true);
    m_cameraManipulator->setByInverseMatrix(inverse);
}

void iViewer::setViewLookup(iView::iViewLookup lookup)
{
    if (!validLookup(lookup))
        return;
    if (!m_lookupAnimate || lookup == iView::iLookupFree)
        abandonLookupAnimation();
    m_previousLookup = m_currentLookup;
    m_nextLookup = lookup;
    m_currentLookup = lookup;
    if (lookup == iView::iLookupFree) {
        handOverToManipulator();
    } else if (m_lookupAnimate) {
        startLookupSwithAnimation();
        return;
    } else {
        getCamera()->setViewMatrix(m_views[lookup].getState().getViewMatrix());
    }
    finishLookupSwitch(lookup);
}

void iViewer::abandonLookupAnimation()
{
    // A switch made at once ends a running animation, which would go on
    // writing over it; the view it was heading for keeps its own window.
    if (!isLookupAnimating())
        return;
    m_lookupTimer->stop();
    iViewState& target = m_views[m_nextLookup].getState();
    target.setLeft(m_animationTarget.getLeft());
    target.setTop(m_animationTarget.getTop());
    target.setRight(m_animationTarget.getRight());
    target.setBottom(m_animationTarget.getBottom());
    target.setDistance(m_animationTarget.getDistance());
}

void iViewer::finishLookupSwitch(iView::iViewLookup lookup)
{
    applyProjection();
    if (lookup < iView::iLookupFree)
        setCameraManipulator(nullptr, true);
    updateGrid();
    sigIPlaneChanged();
}

void iViewer::startLookupSwithAnimation()
{
    if (!m_lookupTimer) {
        m_lookupTimer = new QTimer(this);
        m_lookupTimer->setInterval(lookupTickMilliseconds);
        connect(m_lookupTimer, &QTimer::timeout, this, &iViewer::lookupAnimation);
    }
    m_lookupTimer->stop();
    m_animationParameter = 0.0;
    m_animationStart = m_views[m_previousLookup].getState();
    m_animationTarget = m_views[m_nextLookup].getState();
    m_lookupTimer->start();
}

void iViewer::lookupAnimation()
{
    double const t = std::min(m_animationParameter, 1.0);
    osg::Vec3d nextTranslation, previousTranslation, nextScale, previousScale;
    osg::Quat nextRotation, previousRotation, nextScaleOrientation, previousScaleOrientation;
    m_views[m_nextLookup].getState().getViewMatrix().decompose(nextTranslation, nextRotation, nextScale,
                                                               nextScaleOrientation);
    m_views[m_previousLookup].getState().getViewMatrix().decompose(previousTranslation, previousRotation,
                                                                   previousScale, previousScaleOrientation);
    // A plain blend of the components; the matrix normalises it.
    osg::Quat const rotation(previousRotation.asVec4() + (nextRotation.asVec4() - previousRotation.asVec4()) * t);
    osg::Vec3f const from(previousTranslation);
    osg::Vec3f const to(nextTranslation);
    osg::Vec3f const translation = from + (to - from) * static_cast<float>(t);
    getCamera()->setViewMatrix(osg::Matrixd::rotate(rotation) * osg::Matrixd::translate(osg::Vec3d(translation)));

    iViewState& window = getCurrentView().getState();
    auto blend = [t](double start, double target) { return start + (target - start) * t; };
    window.setLeft(blend(m_animationStart.getLeft(), m_animationTarget.getLeft()));
    window.setTop(blend(m_animationStart.getTop(), m_animationTarget.getTop()));
    window.setRight(blend(m_animationStart.getRight(), m_animationTarget.getRight()));
    window.setBottom(blend(m_animationStart.getBottom(), m_animationTarget.getBottom()));
    window.setDistance(blend(m_animationStart.getDistance(), m_animationTarget.getDistance()));
    updateProjection(width(), height());
    getCamera()->setProjectionMatrix(m_views[m_nextLookup].getState().getProjectionMatrix());

    m_animationParameter += lookupTickStep;
    if (m_animationParameter <= 1.0)
        return;
    if (m_lookupTimer)
        m_lookupTimer->stop();
    if (m_nextLookup == iView::iLookupFree)
        handOverToManipulator();
    if (m_nextLookup < iView::iLookupFree)
        setCameraManipulator(nullptr, true);
    updateGrid();
    sigIPlaneChanged();
}

void iViewer::updateProjection(int w, int h)
{
    iView& view = getCurrentView();
    iViewState& state = view.getState();
    if (view.isPerspective()) {
        double const height = this->height();
        double const aspect = height > 0.0 ? this->width() / height : 1.0;
        state.setProjectionMatrix(osg::Matrixd::perspective(30.0, aspect, 1.0, 10000.0));
        return;
    }
    double const hw = (state.getRight() - state.getLeft()) * 0.5;
    double const hh = (state.getTop() - state.getBottom()) * 0.5;
    double const aspect = h != 0 ? static_cast<double>(w) / h : 1.0;
    double left = -hw, right = hw, bottom = -hh, top = hh;
    if (aspect < 1.0) {
        bottom = -hh / aspect;
        top = hh / aspect;
    } else {
        left = -hw * aspect;
        right = hw * aspect;
    }
    state.setProjectionMatrix(osg::Matrixd::ortho(left, right, bottom, top, state.getNear(), state.getFar()));
}

void iViewer::updateViewMatrix()
{
    getCurrentView().getState().setViewMatrices(getCamera()->getViewMatrix(), getCamera()->getInverseViewMatrix());
}

void iViewer::setViewMatrix(osg::Matrixd const& view)
{
    getCamera()->setViewMatrix(view);
    updateViewMatrix();
}

void iViewer::resetToHome()
{
    getCurrentView().resetToHome();
    setViewLookup(m_currentLookup);
}

void iViewer::pan(int x1, int y1, int x2, int y2)
{
    osg::Matrixd const toWorld = osg::Matrixd::inverse(cameraToWindow(getCamera()));
    osg::Vec3f const a(osg::Vec3d(x1, y1, 0.0) * toWorld);
    osg::Vec3f const b(osg::Vec3d(x2, y2, 0.0) * toWorld);
    getCamera()->setViewMatrix(osg::Matrixd::translate(osg::Vec3d(b - a)) * getCamera()->getViewMatrix());
    updateViewMatrix();
}

void iViewer::zoomFactor(double f)
{
    iViewState& state = getCurrentView().getState();
    double const left = state.getLeft() - (state.getRight() - state.getLeft()) * f;
    double const top = state.getTop() + (state.getTop() - state.getBottom()) * f;
    double const right = state.getRight() + (state.getRight() - left) * f;
    double const bottom = state.getBottom() - (top - state.getBottom()) * f;
    if (!(left > right)) {
        state.setLeft(left);
        state.setRight(right);
    }
    if (!(bottom > top)) {
        state.setTop(top);
        state.setBottom(bottom);
    }
    applyProjection();
}

void iViewer::zoomWindow(int x1, int y1, int x2, int y2)
{
    int const l = std::min(x1, x2), r = std::max(x1, x2);
    int const b = std::min(y1, y2), t = std::max(y1, y2);
    if (r - l < 5 || t - b < 5)
        return;
    osg::Camera* camera = getCamera();
    osg::Viewport const* viewport = camera->getViewport();
    if (!viewport)
        return;
    osg::Matrixd const toWorld = osg::Matrixd::inverse(cameraToWindow(camera));
    osg::Vec3d const c(roundHalfAway(viewport->x() + viewport->width() * 0.5),
                       roundHalfAway(viewport->y() + viewport->height() * 0.5), 0.0);
    osg::Vec3d const m(l + (r - l) / 2.0, b + (t - b) / 2.0, 0.0);
    osg::Vec3d const cw = c * toWorld;
    osg::Vec3d const mw = m * toWorld;

    osg::Matrixd const toEye = osg::Matrixd::inverse(viewport->computeWindowMatrix() * camera->getProjectionMatrix());
    osg::Vec3d const p = osg::Vec3d(l, t, 0.0) * toEye;
    osg::Vec3d const q = osg::Vec3d(r, b, 0.0) * toEye;
    double const half = std::max(0.51 * std::fabs(p.x() - q.x()), 0.51 * std::fabs(p.y() - q.y()));
    iViewState& state = getCurrentView().getState();
    state.setLeft(-half);
    state.setTop(half);
    state.setRight(half);
    state.setBottom(-half);
    applyProjection();

    osg::Matrixd const inverseView = camera->getInverseViewMatrix() * osg::Matrixd::translate(mw - cw);
    setViewMatrix(osg::Matrixd::inverse(inverseView));
}

void iViewer::zoomBounds(NodeList const& nodes)
{
    float const far = 8999999488.0f;
    osg::BoundingBox box(far, far, far, -far, -far, -far);
    bool found = false;
    for (osg::ref_ptr<osg::Node> const& node : nodes) {
        if (!node.valid())
            continue;
        osg::MatrixList const worlds = node->getWorldMatrices();
        if (worlds.empty())
            continue;
        osg::ComputeBoundsVisitor visitor(osg::NodeVisitor::TRAVERSE_ACTIVE_CHILDREN);
        node->accept(visitor);
        osg::BoundingBox const& bound = visitor.getBoundingBox();
        if (!bound.valid())
            continue;
        box.expandBy(bound._min * worlds.front());
        box.expandBy(bound._max * worlds.front());
        found = true;
    }
    if (!found)
        return;

    osg::Vec3d const centre = box.center();
    osg::Vec3d const extents(std::fabs(box.xMax() - box.xMin()), std::fabs(box.yMax() - box.yMin()),
                             std::fabs(box.zMax() - box.zMin()));
    iViewState& state = getCurrentView().getState();
    state.setDistance(std::max(extents.x(), std::max(extents.y(), extents.z())) * 0.5 * 10.0);

    osg::Matrixd const inverseView = osg::Matrixd::translate(0.0, 0.0, state.getDistance()) *
                                     osg::Matrixd::rotate(getCamera()->getInverseViewMatrix().getRotate()) *
                                     osg::Matrixd::translate(centre);
    setViewMatrix(osg::Matrixd::inverse(inverseView));

    osg::Vec3d const normal = osg::Matrixd::transform3x3(osg::Vec3d(0.0, 0.0, 1.0), inverseView);
    osg::Plane const plane(normal, 0.0);
    osg::BoundingBox projected;
    for (unsigned int i = 0; i < 8; ++i) {
        osg::Vec3d const corner = box.corner(i);
        projected.expandBy(corner - normal * plane.distance(corner));
    }
    double const size = (projected._max - projected._min).length();
    state.setLeft(-size / 2.0);
    state.setTop(size / 2.0);
    state.setRight(size / 2.0);
    state.setBottom(-size / 2.0);
    applyProjection();
}
