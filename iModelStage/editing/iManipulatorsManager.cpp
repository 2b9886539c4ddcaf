#include <iModelStage/editing/iManipulatorsManager.h>

#include <iModelStage/editing/iBaseManipulator.h>
#include <iModelStage/geometry/iGeometricsLayer.h>

#include <set>

I_REGISTER_CLASS(iManipulatorsManager)

iManipulatorsManager* iManipulatorsManager::s_instance = nullptr;

iManipulatorsManager::iManipulatorsManager()
{
    if (!s_instance)
        s_instance = this;
}

iManipulatorsManager::~iManipulatorsManager()
{
    removeCurrentManipulator();
    if (s_instance == this)
        s_instance = nullptr;
}

iManipulatorsManager* iManipulatorsManager::getInstance()
{
    if (!s_instance)
        new iManipulatorsManager;
    return s_instance;
}

std::map<std::pair<std::string, std::string>, std::string>& iManipulatorsManager::registry()
{
    static std::map<std::pair<std::string, std::string>, std::string> map;
    return map;
}

std::string& iManipulatorsManager::defaultClass()
{
    static std::string name;
    return name;
}

bool iManipulatorsManager::registerObjectManipulator(char const* objectClass, char const* manipulatorClass,
                                                     char const* key)
{
    if (!objectClass || !manipulatorClass || !iRoot::findClass(objectClass) || !iRoot::findClass(manipulatorClass))
        return false;
    std::pair<std::string, std::string> const pair(objectClass, key ? key : "");
    auto found = registry().find(pair);
    if (found != registry().end()) {
        found->second = manipulatorClass;
        return false;
    }
    registry()[pair] = manipulatorClass;
    return true;
}

void iManipulatorsManager::setDefaultObjectManipulator(char const* manipulatorClass)
{
    defaultClass() = manipulatorClass ? manipulatorClass : "";
}

namespace {

// A new manipulator of the class, or null for an unknown class or one that
// is not a manipulator.
iBaseManipulator* makeManipulator(std::string const& className)
{
    if (className.empty())
        return nullptr;
    iRoot* made = iRoot::newClass(className.c_str());
    if (auto* manipulator = dynamic_cast<iBaseManipulator*>(made))
        return manipulator;
    if (auto* counted = dynamic_cast<osg::Referenced*>(made))
        osg::ref_ptr<osg::Referenced> const drop(counted);
    else
        delete made;
    return nullptr;
}

} // namespace

iBaseManipulator* iManipulatorsManager::getManipulator(char const* objectClass, char const* key)
{
    auto found = registry().find(std::make_pair(std::string(objectClass ? objectClass : ""),
                                                std::string(key ? key : "")));
    return found == registry().end() ? nullptr : makeManipulator(found->second);
}

iBaseManipulator* iManipulatorsManager::getCurrentManipulator()
{
    return _current.get();
}

void iManipulatorsManager::setGeometricsLayer(iGeometricsLayer* layer)
{
    if (iGeometricsLayer* old = _layer.get())
        old->sigObjectsSelectionChanged.disconnect(this);
    _layer = layer;
    if (layer)
        layer->sigObjectsSelectionChanged.connect(this, &iManipulatorsManager::slotLayerSelectionChanged);
}

void iManipulatorsManager::removeCurrentManipulator()
{
    osg::ref_ptr<iBaseManipulator> const old = _current;
    _current = nullptr;
    if (!old)
        return;
    // A gizmo at work keeps its targets until it stops.
    if (!old->inProgress())
        old->slotSetTargets(nullptr);
    // Out of whichever interactive group holds it.
    while (old->getNumParents() > 0)
        old->getParent(0)->removeChild(old.get());
}

void iManipulatorsManager::slotLayerSelectionChanged()
{
    iGeometricsLayer* layer = _layer.get();
    if (layer)
        removeCurrentManipulator();
    _targets.clear();
    if (!layer)
        return;

    std::set<std::string> classes;
    iRoot::getChildrenClassesList("iTransformGroup", classes, true);
    NodeList selected;
    layer->getSelectionList(selected, &classes);
    if (selected.empty())
        return;

    std::string const className = iBaseModel::getNodeClassName(selected.front().get());
    osg::ref_ptr<iBaseManipulator> manipulator = getManipulator(className.c_str(), "");
    if (!manipulator)
        manipulator = makeManipulator(defaultClass());
    if (!manipulator)
        return;
    // One gizmo serves objects of one class only.
    for (osg::ref_ptr<osg::Node> const& node : selected) {
        if (iBaseModel::getNodeClassName(node.get()) != className) {
            _targets.clear();
            return;
        }
        _targets.push_back(node);
    }

    _current = manipulator;
    osg::Group* group = layer->getInteractiveLayer();
    if (group) {
        unsigned int const n = group->getNumChildren();
        group->insertChild(n > 0 ? n - 1 : 0, manipulator.get());
    }
    manipulator->slotSetTargets(&_targets);
    manipulator->buildGeometry();
}
