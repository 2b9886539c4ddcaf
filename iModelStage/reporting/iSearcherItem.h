#ifndef IMODELSTAGE_REPORTING_ISEARCHERITEM_H
#define IMODELSTAGE_REPORTING_ISEARCHERITEM_H

#include <iModelStage/frame/iExport.h>

#include <string>

namespace osg {
class Node;
}
class iNodeLayer;

// One hit of a search: a layer (layer alone), an object (layer and
// object) or a tool (its class name alone).
class IMODELSTAGE_EXPORT iSearcherItem {
public:
    iSearcherItem() = default;
    iSearcherItem(iNodeLayer* layer, osg::Node* object, std::string interactorClassName)
        : _layer(layer), _object(object), _interactorClassName(std::move(interactorClassName))
    {
    }

    iNodeLayer* getLayer() const { return _layer; }
    osg::Node* getObject() const { return _object; }
    std::string const& getInteractorClassName() const { return _interactorClassName; }

private:
    iNodeLayer* _layer = nullptr;
    osg::Node* _object = nullptr;
    std::string _interactorClassName;
};

#endif
