#include <iModelStage/reporting/iSearcher.h>

#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>

#include <QString>
#include <QStringList>

#include <set>
#include <vector>

I_REGISTER_CLASS(iSearcher)

namespace {

char const* const kRendererNodes = "__#iGeometricRendererNodes#__";

void searchLayers(std::vector<iNodeLayer*> const& layers, std::string const& text, std::list<iSearcherItem>& out)
{
    for (iNodeLayer* layer : layers) {
        std::string const alias = layer->getClassAlias();
        if (!alias.empty() && iSearcher::matches(alias, text))
            out.emplace_back(layer, nullptr, std::string());
    }
}

void searchObjects(std::vector<iNodeLayer*> const& layers, std::string const& text, std::list<iSearcherItem>& out)
{
    for (iNodeLayer* layer : layers) {
        NodeList objects;
        layer->getObjectsList(layer->getRoot(), objects, nullptr);
        for (osg::ref_ptr<osg::Node> const& object : objects) {
            std::string const& name = object->getName();
            if (!name.empty() && name != kRendererNodes && iSearcher::matches(name, text))
                out.emplace_back(layer, object.get(), std::string());
        }
    }
}

void searchTools(std::string const& text, std::list<iSearcherItem>& out)
{
    std::set<std::string> classes;
    iRoot::getChildrenClassesList("iInteractor", classes, false);
    for (std::string const& name : classes) {
        std::string alias;
        iRoot::getClassAlias(name.c_str(), alias);
        if (!alias.empty() && alias != name && iSearcher::matches(alias, text))
            out.emplace_back(nullptr, nullptr, name);
    }
}

} // namespace

iSearcher::iSearcher() = default;
iSearcher::~iSearcher() = default;

bool iSearcher::matches(std::string const& candidate, std::string const& text)
{
    QString const subject = QString::fromUtf8(candidate.c_str(), int(candidate.size()));
    QStringList const words = QString::fromUtf8(text.c_str(), int(text.size())).split(' ', Qt::SkipEmptyParts);
    for (QString const& word : words)
        if (!subject.contains(word, Qt::CaseInsensitive))
            return false;
    return true;
}

bool iSearcher::search(iLayersManager* manager, std::string const& text, std::list<iSearcherItem>& out)
{
    if (!manager)
        manager = iLayersManager::getInstance();
    std::vector<iNodeLayer*> layers;
    if (manager)
        manager->getLayersList(layers);
    out.clear();
    searchLayers(layers, text, out);
    searchObjects(layers, text, out);
    searchTools(text, out);
    return !out.empty();
}
