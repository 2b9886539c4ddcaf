#include <iModelStage/geometry/iGeometryRendererManager.h>

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/viewing/iViewerManager.h>

#include <algorithm>
#include <deque>
#include <map>

I_REGISTER_CLASS(iGeometryRendererManager)

namespace {

// Renderer class names per document class, newest first.
typedef std::map<std::string, std::deque<std::string>> Registry;

Registry& registry()
{
    static Registry entries;
    return entries;
}

iGeometryRendererManager*& instance()
{
    static iGeometryRendererManager* first = nullptr;
    return first;
}

bool known(char const* className)
{
    return className && iRoot::findClass(className);
}

} // namespace

iGeometryRendererManager::iGeometryRendererManager()
{
    if (!instance())
        instance() = this;
}

iGeometryRendererManager::~iGeometryRendererManager()
{
    if (instance() == this)
        instance() = nullptr;
}

iGeometryRendererManager* iGeometryRendererManager::getInstance()
{
    return instance();
}

bool iGeometryRendererManager::registerGeometricRenderer(char const* className, char const* rendererClassName, int)
{
    if (!className || !rendererClassName)
        return false;
    Registry::const_iterator const found = registry().find(className);
    if (found != registry().end() &&
        std::find(found->second.begin(), found->second.end(), rendererClassName) != found->second.end())
        return false;
    if (!known(className) || !known(rendererClassName))
        return false;
    registry()[className].push_front(rendererClassName);
    return true;
}

bool iGeometryRendererManager::getRenderClasses(char const* className, std::list<std::string>& out)
{
    out.clear();
    if (!known(className))
        return false;
    Registry::const_iterator const found = registry().find(className);
    if (found == registry().end())
        return false;
    for (std::string const& renderer : found->second)
        if (iRoot::findClass(renderer.c_str()))
            out.push_back(renderer);
    return !out.empty();
}

bool iGeometryRendererManager::hasAttachedRenderer(char const* className)
{
    if (!known(className))
        return false;
    Registry::const_iterator const found = registry().find(className);
    return found != registry().end() && !found->second.empty();
}

bool iGeometryRendererManager::canRender(int mask)
{
    return iViewerManager::isMaskEnabled(mask);
}

bool iGeometryRendererManager::getGeometricEntities(iGeometricGroup* group, char const* rendererClassName,
                                                    std::vector<iEntityGroup>& out)
{
    if (group && rendererClassName) {
        for (osg::ref_ptr<osg::Node> const& node : group->getCachedRenderer()) {
            auto* renderer = dynamic_cast<iGeometryRenderer*>(node.get());
            if (renderer && iRoot::isClassOf(renderer->getClassName(), rendererClassName))
                renderer->getGeometricEntities(out);
        }
    }
    return !out.empty();
}

void iGeometryRendererManager::slotForceGeometricLayerUpdate()
{
    iGeometryRenderer::forceGeometricLayerUpdate();
}
