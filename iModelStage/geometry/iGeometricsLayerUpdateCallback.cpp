#include <iModelStage/geometry/iGeometricsLayerUpdateCallback.h>

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/geometry/iGeometricsLayer.h>
#include <iModelStage/geometry/iMaterialGroup.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/StateSet>

namespace {

osg::Material* makeMaterial(osg::Vec4f const& colour)
{
    osg::Material* material = new osg::Material;
    material->setColorMode(osg::Material::OFF);
    material->setAmbient(osg::Material::FRONT_AND_BACK, colour);
    material->setDiffuse(osg::Material::FRONT_AND_BACK, colour);
    material->setSpecular(osg::Material::FRONT_AND_BACK, colour);
    return material;
}

// A fresh state set over the group's own, with the material forced on.
// Made anew each time: the group's own set may change between frames.
void applyMaterial(osg::Node* node, osg::Material* material)
{
    iGeometricGroup* group = dynamic_cast<iGeometricGroup*>(node);
    if (!group)
        return;
    osg::ref_ptr<osg::StateSet> state = new osg::StateSet;
    state->merge(*group->getOrCreateStateSet());
    state->setAttributeAndModes(material, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setMode(GL_LIGHTING, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    state->setMode(GL_BLEND, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    group->setStateSet(state.get());
}

// The group's look without highlight: its material's state set when it
// shows its material, else its own set without a material.
void restoreLook(osg::Node* node)
{
    iGeometricGroup* group = dynamic_cast<iGeometricGroup*>(node);
    if (!group)
        return;
    osg::ref_ptr<iMaterialGroup> material;
    if (group->get_material().lock(material) && material && !group->get_usecolor()) {
        group->setStateSet(material->getOrCreateStateSet());
        return;
    }
    if (osg::StateSet* state = group->getStateSet())
        state->removeAttribute(osg::StateAttribute::MATERIAL);
}

} // namespace

iGeometricsLayerUpdateCallback::iGeometricsLayerUpdateCallback(iGeometricsLayer* layer) : _layer(layer)
{
    getSelectionMaterial();
    getFilteredMaterial();
}

iGeometricsLayerUpdateCallback::~iGeometricsLayerUpdateCallback() = default;

osg::Material* iGeometricsLayerUpdateCallback::getSelectionMaterial()
{
    static osg::ref_ptr<osg::Material> const material = [] {
        osg::Material* made = makeMaterial(osg::Vec4f(0.0f, 0.0f, 0.0f, 0.65f));
        made->setEmission(osg::Material::FRONT_AND_BACK, osg::Vec4f(0.95f, 0.61f, 0.11f, 1.0f));
        return made;
    }();
    return material.get();
}

osg::Material* iGeometricsLayerUpdateCallback::getFilteredMaterial()
{
    static osg::ref_ptr<osg::Material> const material = makeMaterial(osg::Vec4f(0.2f, 0.2f, 0.2f, 0.2f));
    return material.get();
}

void iGeometricsLayerUpdateCallback::operator()(osg::Node* node, osg::NodeVisitor* visitor)
{
    osg::ref_ptr<iGeometricsLayer> layer;
    if (node && _layer.lock(layer) && layer)
        updateLook(layer.get(), node);
    traverse(node, visitor);
}

void iGeometricsLayerUpdateCallback::updateLook(iGeometricsLayer* layer, osg::Node* node)
{
    bool const passes = layer->isObjectFiltered(node);
    bool const selectable = iNodeGroup::isNodeFlagSet(node, 1);
    if (layer->isObjectSelected(node) && selectable && iNodeGroup::isNodeFlagSet(node, 11))
        applyMaterial(node, getSelectionMaterial());
    else if (selectable && passes)
        restoreLook(node);
    else
        applyMaterial(node, getFilteredMaterial());
}
