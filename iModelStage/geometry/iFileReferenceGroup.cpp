#include <iModelStage/geometry/iFileReferenceGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/frame/iTranslate.h>
#include <iModelStage/geometry/iImportExportManager.h>
#include <iModelStage/model/iBaseModel.h>
#include <iModelStage/model/iForEachNode.h>
#include <iModelStage/model/iLayersManager.h>
#include <iModelStage/model/iNodeLayer.h>

#include <osg/ComputeBoundsVisitor>

I_REGISTER_PERSISTENT_CLASS(iFileReferenceGroup)
I_REGISTER_PROPERTY(iFileReferenceGroup, iStringFileName, filename, "Generale")
I_REGISTER_PROPERTY(iFileReferenceGroup, bool, movetoorig, "Generale")
I_REGISTER_PROPERTY(iFileReferenceGroup, iScaleUnit, scaleunit, "Generale")

namespace {

char const* const kGeometricsLayer = "iGeometricsLayer";

// The objects of an import come from their file at every load: none of
// them is written to the document, nor only the wrapper above them.
void keepOutOfDocument(osg::Node* content)
{
    iForEachNode(content, [](osg::Node* node) {
        if (node->asGeode() || iBaseModel::isRendererContainer(node))
            return iVisit::SkipChildren;
        if (auto* object = dynamic_cast<iNodeGroup*>(node))
            object->setFlag(6, false);
        return iVisit::Continue;
    });
}

} // namespace

iFileReferenceGroup::iFileReferenceGroup()
{
    _movetoorig = true;
    _scaleunit = 1.0;
    connectSlots();
}

iFileReferenceGroup::iFileReferenceGroup(iFileReferenceGroup const& other, osg::CopyOp const& copyop)
    : iGeometricGroup(other, copyop)
{
    _filename = other._filename;
    _movetoorig = other._movetoorig;
    _scaleunit = other._scaleunit;
    connectSlots();
    adoptWrapperOf(other);
}

iFileReferenceGroup::~iFileReferenceGroup() = default;

void iFileReferenceGroup::connectSlots()
{
    sigfilenameChanged.connect(this, &iFileReferenceGroup::slotfilenameChanged);
    sigmovetoorigChanged.connect(this, &iFileReferenceGroup::slotmovetoorigChanged);
    sigscaleunitChanged.connect(this, &iFileReferenceGroup::slotscaleunitChanged);
}

void iFileReferenceGroup::adoptWrapperOf(iFileReferenceGroup const& other)
{
    osg::ref_ptr<iTransformGroup> source;
    if (!other.referencedNode.lock(source) || !source)
        return;
    unsigned int const index = other.getChildIndex(source.get());
    if (index >= other.getNumChildren()) {
        _detachedWrapper = source;
        referencedNode = source;
        return;
    }
    // The copy of the children put the wrapper's copy at the same place.
    if (index < getNumChildren())
        referencedNode = dynamic_cast<iTransformGroup*>(getChild(index));
}

iTransformGroup* iFileReferenceGroup::getReferencedNode()
{
    osg::ref_ptr<iTransformGroup> wrapper;
    referencedNode.lock(wrapper);
    return wrapper.get();
}

void iFileReferenceGroup::slotfilenameChanged(iRoot*, std::string)
{
    load();
}

void iFileReferenceGroup::slotmovetoorigChanged(iRoot*, bool)
{
    updateReferencedGeometry();
}

void iFileReferenceGroup::slotscaleunitChanged(iRoot*, double)
{
    updateReferencedGeometry();
}

void iFileReferenceGroup::resolveLinks()
{
    load();
}

void iFileReferenceGroup::dropContent(iBaseModel* layer)
{
    osg::ref_ptr<iTransformGroup> wrapper;
    referencedNode.lock(wrapper);
    layer->removeObject(wrapper.get(), true);
    // A wrapper the layer would not take out (this object is in no tree)
    // goes all the same: a failed import must leave nothing shown.
    if (wrapper && getChildIndex(wrapper.get()) < getNumChildren())
        removeChild(wrapper.get());
    _detachedWrapper = nullptr;
    referencedNode = nullptr;
}

void iFileReferenceGroup::load()
{
    if (!iLayersManager::getInstance())
        return;
    iNodeLayer* layer = iLayersManager::getLayer(kGeometricsLayer);
    if (!layer)
        return;
    dropContent(layer);

    osg::ref_ptr<osg::Node> content = iImportExportManager::importFromFile(_filename);
    if (content) {
        osg::ref_ptr<iTransformGroup> wrapper = new iTransformGroup;
        wrapper->set_name(iTranslate("Geometria"));
        wrapper->setFlag(6, false);
        referencedNode = wrapper;
        wrapper->addChild(content.get());
        if (dynamic_cast<iGeometricGroup*>(content.get())) {
            keepOutOfDocument(content.get());
            layer->addChildObject(this, wrapper.get(), true);
        }
        else
            _detachedWrapper = wrapper;
    }
    updateReferencedGeometry();
}

void iFileReferenceGroup::updateReferencedGeometry()
{
    osg::ref_ptr<iTransformGroup> wrapper;
    if (!referencedNode.lock(wrapper) || !wrapper)
        return;
    wrapper->setPosition(osg::Vec3f(0.0f, 0.0f, 0.0f));
    float const scale = static_cast<float>(_scaleunit);
    if (_movetoorig) {
        // The content in the wrapper's own space, whatever its scale now.
        osg::ComputeBoundsVisitor bounds;
        wrapper->osg::Group::traverse(bounds);
        osg::BoundingBox const& box = bounds.getBoundingBox();
        if (box.valid())
            wrapper->setPosition(wrapper->getPosition() - box._min * scale);
    }
    wrapper->setScale(osg::Vec3f(scale, scale, scale));
    updateGeometry(false);
}

void iFileReferenceGroup::read(iInStream& stream, int version)
{
    sigslot::signal_blocker<decltype(sigfilenameChanged)> const blockName(sigfilenameChanged);
    sigslot::signal_blocker<decltype(sigmovetoorigChanged)> const blockMove(sigmovetoorigChanged);
    sigslot::signal_blocker<decltype(sigscaleunitChanged)> const blockScale(sigscaleunitChanged);
    set_filename(stream.readString());
    if (version < 2)
        return;
    set_movetoorig(stream.readBool());
    set_scaleunit(stream.readDouble());
}

void iFileReferenceGroup::write(iOutStream& stream)
{
    stream.writeString(_filename);
    stream.writeBool(_movetoorig);
    stream.writeDouble(_scaleunit);
}
