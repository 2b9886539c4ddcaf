#include <iModelStage/editing/iGeometryHandlerManager.h>

#include <algorithm>

I_REGISTER_CLASS(iGeometryHandlerManager)

iGeometryHandlerManager* iGeometryHandlerManager::s_instance = nullptr;

iGeometryHandlerManager::iGeometryHandlerManager()
{
    if (!s_instance)
        s_instance = this;
}

iGeometryHandlerManager::~iGeometryHandlerManager()
{
    if (s_instance == this)
        s_instance = nullptr;
}

iGeometryHandlerManager* iGeometryHandlerManager::getInstance()
{
    if (!s_instance)
        new iGeometryHandlerManager;
    return s_instance;
}

std::map<std::string, std::vector<std::string>>& iGeometryHandlerManager::registry()
{
    static std::map<std::string, std::vector<std::string>> map;
    return map;
}

bool iGeometryHandlerManager::registerGeometricHandler(char const* geometricClass, char const* handlerClass)
{
    if (!geometricClass || !handlerClass || !iRoot::findClass(geometricClass) || !iRoot::findClass(handlerClass))
        return false;
    // A second registration of the same pair would make every handle twice.
    std::vector<std::string>& list = registry()[geometricClass];
    if (std::find(list.begin(), list.end(), handlerClass) == list.end())
        list.push_back(handlerClass);
    return true;
}

bool iGeometryHandlerManager::getHandlerClasses(char const* className, std::vector<std::string>& out)
{
    out.clear();
    if (!className)
        return false;
    auto const found = registry().find(className);
    if (found == registry().end())
        return false;
    // A handler whose library went away is passed over.
    for (std::string const& name : found->second)
        if (iRoot::findClass(name.c_str()))
            out.push_back(name);
    return !out.empty();
}
