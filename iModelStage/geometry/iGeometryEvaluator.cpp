#include <iModelStage/geometry/iGeometryEvaluator.h>

#include <iModelStage/geometry/iFrameInstance.h>
#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryEvaluatorObject.h>
#include <iModelStage/model/iLayersManager.h>

#include <map>
#include <set>
#include <string>

namespace {

// Document class name to evaluator class name.
std::map<std::string, std::string>& registry()
{
    static std::map<std::string, std::string> entries;
    return entries;
}

char const* const kGroupClass = "iGeometricGroup";

} // namespace

iGeometryEvaluator::iGeometryEvaluator(iGeometricGroup* group)
    : group(group), layersManager(iLayersManager::getInstance()),
      evaluator(getEvaluatorForClass(group ? group->getClassName() : nullptr))
{
}

iGeometryEvaluator::iGeometryEvaluator(iGeometryEvaluator const& other) = default;

iGeometryEvaluator& iGeometryEvaluator::operator=(iGeometryEvaluator const& other) = default;

iGeometryEvaluator::~iGeometryEvaluator() = default;

double iGeometryEvaluator::compute(Compute what)
{
    if (!evaluator)
        return 0.0;
    return (evaluator.get()->*what)(layersManager, group.get());
}

double iGeometryEvaluator::computeArea()
{
    return compute(&iGeometryEvaluatorObject::_computeAreaImpl);
}

double iGeometryEvaluator::computeVolume()
{
    return compute(&iGeometryEvaluatorObject::_computeVolumeImpl);
}

double iGeometryEvaluator::computeLoad()
{
    return compute(&iGeometryEvaluatorObject::_computeLoadImpl);
}

bool iGeometryEvaluator::registerNewEvaluator(char const* evaluatorClass, char const* className)
{
    if (!evaluatorClass || !className)
        return false;
    if (!iRoot::isClassOf(className, kGroupClass))
        return false;
    if (!iRoot::findClass(evaluatorClass) || !iRoot::findClass(className))
        return false;
    return registry().emplace(className, evaluatorClass).second;
}

iGeometryEvaluatorObject* iGeometryEvaluator::getEvaluatorForClass(char const* className)
{
    if (!className)
        return nullptr;
    // Up the parent chain to the nearest class with an entry, and no
    // further than iGeometricGroup. Rows that a host enters by hand could
    // name a parent already met: the walk stops there too.
    std::set<std::string> met;
    std::string current = className;
    while (met.insert(current).second) {
        auto const found = registry().find(current);
        if (found != registry().end())
            return iNewFrameInstance<iGeometryEvaluatorObject>(found->second.c_str()).release();
        std::string parent;
        if (current == kGroupClass || !iRoot::getParentClassName(current.c_str(), parent) || parent.empty())
            return nullptr;
        current = parent;
    }
    return nullptr;
}
