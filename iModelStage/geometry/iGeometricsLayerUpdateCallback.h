#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICSLAYERUPDATECALLBACK_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICSLAYERUPDATECALLBACK_H

#include <iModelStage/frame/iExport.h>

#include <osg/Material>
#include <osg/NodeCallback>
#include <osg/observer_ptr>

class iGeometricsLayer;

// Gives every object of a geometrics layer its look in each update
// traversal: selected objects shine amber, objects that cannot be selected
// or do not pass the selection filter turn a faint grey, the others get
// their normal look back. Highlighting so costs a state set per node and
// never a rebuild.
class IMODELSTAGE_EXPORT iGeometricsLayerUpdateCallback : public osg::NodeCallback {
public:
    explicit iGeometricsLayerUpdateCallback(iGeometricsLayer* layer);

    void operator()(osg::Node* node, osg::NodeVisitor* visitor) override;

    // Shared by every callback of the process.
    static osg::Material* getSelectionMaterial();
    static osg::Material* getFilteredMaterial();

protected:
    ~iGeometricsLayerUpdateCallback() override;

private:
    void updateLook(iGeometricsLayer* layer, osg::Node* node);

    osg::observer_ptr<iGeometricsLayer> _layer;
};

#endif
