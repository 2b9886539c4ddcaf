#include <iModelStage/interaction/iTransformIA.h>

#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iFileReferenceGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/model/iTransformGroup.h>
#include <iModelStage/viewing/iViewer.h>

I_REGISTER_CLASS(iTransformIA)
I_REGISTER_PROPERTY(iTransformIA, bool, makecopy, "Transform")

iTransformIA::iTransformIA() = default;

iTransformIA::~iTransformIA() = default;

std::set<std::string>& iTransformIA::targetClasses()
{
    static std::set<std::string> classes;
    classes.clear();
    iRoot::getChildrenClassesList("iTransformGroup", classes, true);
    return classes;
}

void iTransformIA::addTransformSteps(std::initializer_list<char const*> prompts)
{
    for (char const* prompt : prompts)
        addStep(QString::fromUtf8(iTranslate(prompt)), iIATypeVec3, osg::Vec3f());
}

void iTransformIA::start()
{
    iInteractor::start();
    storeForUndo(getClassAlias());
    beginTransform();
}

void iTransformIA::beginTransform()
{
    _targets.clear();
    _startMatrices.clear();
    iGeometricsLayer* layer = getGeometricsLayer();
    if (!layer)
        return;
    layer->getSelectionList(_targets, &targetClasses());
    for (osg::ref_ptr<osg::Node> const& target : _targets)
        if (auto* group = dynamic_cast<iTransformGroup*>(target.get()))
            _startMatrices.push_back(group->getWorldMatrix());
        else
            _startMatrices.push_back(osg::Matrixd::identity());
}

void iTransformIA::transformFromStart(std::vector<osg::Matrixd> const& starts, osg::Matrixd const& m)
{
    for (size_t i = 0; i < _targets.size() && i < starts.size(); ++i)
        if (auto* group = dynamic_cast<iTransformGroup*>(_targets[i].get()))
            group->setWorldMatrix(starts[i] * m);
}

bool iTransformIA::cameraLineAt(iIAPoint const& p, osg::Vec3f& near, osg::Vec3f& far, osg::Matrixd& targetMatrix)
{
    osg::Vec3f window;
    iViewer* viewer = getViewer();
    if (!project3DTo2D(p.getGlobalPos(), window) || getCurrentStep() != 1 || _targets.empty() || !viewer)
        return false;
    if (!viewer->computeCameraLineIntersector(window.x(), window.y(), near, far))
        return false;
    auto* target = dynamic_cast<iTransformGroup*>(_targets.front().get());
    targetMatrix = target ? target->getWorldMatrix() : osg::Matrixd::identity();
    return true;
}

void iTransformIA::translateFromStart(osg::Vec3f const& delta)
{
    transformFromStart(_startMatrices, osg::Matrixd::translate(delta));
}

void iTransformIA::cancelTransform()
{
    transformFromStart(_startMatrices, osg::Matrixd::identity());
}

void iTransformIA::endTransform()
{
    iGeometricsLayer* layer = getGeometricsLayer();
    if (!get_makecopy() || !layer)
        return;
    for (osg::ref_ptr<osg::Node> const& target : _targets) {
        // Still the sources when copying began too late to clone.
        if (layer->isRelative(target.get()))
            continue;
        getILayer()->removeChild(target.get());
        layer->addObject(target.get(), true);
        if (auto* reference = dynamic_cast<iFileReferenceGroup*>(target.get()))
            reference->updateGeometry(false);
    }
}

void iTransformIA::cancel()
{
    cancelUndoStore();
    cancelTransform();
    iInteractor::cancel();
}

void iTransformIA::end()
{
    endTransform();
    iInteractor::end();
}

void iTransformIA::close()
{
    endTransform();
    iInteractor::close();
}

bool iTransformIA::release(iIAPoint const& p)
{
    iInteractor::release(p);
    set_makecopy(get_makecopy() || getKeyModifiers() == 1);
    iGeometricsLayer* layer = getGeometricsLayer();
    if (getCurrentStep() != 1 || !get_makecopy() || !layer)
        return false;
    NodeList clones;
    if (!layer->cloneSelectedObjects(clones, false, &targetClasses(), true))
        return false;
    _targets = clones;
    for (osg::ref_ptr<osg::Node> const& clone : clones)
        getILayer()->addChild(clone.get());
    return false;
}

bool iTransformIA::anchorAtCursor(iIAPoint const& p)
{
    iTransformIA::release(p);
    osg::Vec3f point;
    if (cursorPoint(p, point))
        _anchor = point;
    return true;
}

bool iTransformIA::dragToCursor(iIAPoint const& p)
{
    iInteractor::move(p);
    osg::Vec3f point;
    if (!cursorPoint(p, point))
        return true;
    _delta = point - _anchor;
    applyTransform();
    return true;
}
