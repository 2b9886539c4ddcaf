#include <iModelStage/geometry/iGeometricGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iGeometryRenderer.h>
#include <iModelStage/geometry/iGeometryRendererManager.h>
#include <iModelStage/geometry/iMaterialGroup.h>
#include <iModelStage/model/iBaseModel.h>

#include <osg/Geode>
#include <osg/StateSet>

#include <algorithm>
#include <list>

I_REGISTER_PERSISTENT_CLASS(iGeometricGroup)
I_REGISTER_PROPERTY(iGeometricGroup, iColor4, clr, "Rendering")
I_REGISTER_PROPERTY(iGeometricGroup, iMaterialGroupObserver, material, "Rendering")
I_REGISTER_PROPERTY(iGeometricGroup, iBoolSwitch, usecolor, "Rendering")
I_REGISTER_PROPERTY(iGeometricGroup, iBoolSwitch, usematerial, "Rendering")
I_REGISTER_PROPERTY(iGeometricGroup, bool, selectable, "State")
I_REGISTER_PROPERTY(iGeometricGroup, bool, visible, "State")

namespace {

osg::Vec4f const kYellow(1.0f, 1.0f, 0.0f, 1.0f);

} // namespace

iGeometricGroup::iGeometricGroup()
{
    iGeometricGroup::initialize();
}

iGeometricGroup::iGeometricGroup(iGeometricGroup const& other, osg::CopyOp const& copyop)
    : iTransformGroup(other, copyop)
{
    iGeometricGroup::initialize();
    _rendererValid = false;
    storeColor(other._color);
    copyProperties(other);
}

iGeometricGroup::~iGeometricGroup() = default;

void iGeometricGroup::copyProperties(iGeometricGroup const& other)
{
    set_usecolor(other._usecolor);
    set_clr(other._clr);
    set_usematerial(other._usematerial);
    set_material(other._material);
    set_visible(other._visible);
    set_selectable(other._selectable);
    _materialUid = other._materialUid;
}

void iGeometricGroup::initialize()
{
    _color = kYellow;
    _sharedColorArray = new osg::Vec4Array(1, &_color);

    set_usecolor(true);
    set_usematerial(false);
    set_clr(_color);
    set_visible(true);
    set_selectable(true);

    getOrCreateStateSet()->setTextureMode(0, GL_TEXTURE_2D, osg::StateAttribute::ON | osg::StateAttribute::OVERRIDE);
    setUpdateCallback(nullptr);
    _materialUid = -1;

    sigclrChanged.connect(this, &iGeometricGroup::slotclrChanged);
    sigFlagsChanged.connect(this, &iGeometricGroup::slotFlagsChanged);
    sigvisibleChanged.connect(this, &iGeometricGroup::slotvisibleChanged);
    sigselectableChanged.connect(this, &iGeometricGroup::slotselectableChanged);
    sigmaterialChanged.connect(this, &iGeometricGroup::slotmaterialChanged);
}

void iGeometricGroup::storeColor(osg::Vec4f const& color)
{
    _color = color;
    (*_sharedColorArray)[0] = color;
    // Drawables that keep the array in a buffer object need it sent again.
    _sharedColorArray->dirty();
}

void iGeometricGroup::setColor(osg::Vec4f const& color)
{
    storeColor(color);
    set_clr(color);
    dirtyDrawables();
}

void iGeometricGroup::slotclrChanged(iRoot*, osg::Vec4f color)
{
    storeColor(color);
    dirtyDrawables();
}

void iGeometricGroup::slotFlagsChanged(iNodeGroup* node, std::bitset<32>, std::bitset<32>)
{
    if (_writingFlag || !node)
        return;
    std::bitset<32> const flags = node->getFlags();
    set_visible(flags.test(0));
    set_selectable(flags.test(1));
}

void iGeometricGroup::slotvisibleChanged(iRoot*, bool value)
{
    bool const previous = _writingFlag;
    _writingFlag = true;
    setFlag(0, value);
    _writingFlag = previous;
}

void iGeometricGroup::slotselectableChanged(iRoot*, bool value)
{
    bool const previous = _writingFlag;
    _writingFlag = true;
    setFlag(1, value);
    _writingFlag = previous;
}

void iGeometricGroup::slotmaterialChanged(iRoot*, iMaterialGroupObserver material)
{
    osg::ref_ptr<iMaterialGroup> alive;
    if (material.lock(alive) && alive)
        _materialUid = static_cast<int>(alive->getUniqueId());
}

void iGeometricGroup::resolveLinks()
{
    if (auto* material = dynamic_cast<iMaterialGroup*>(findObjectByUniqueId(_materialUid)))
        set_material(iMaterialGroupObserver(material));
}

void iGeometricGroup::finalize(std::string const& id)
{
    sigGeometryGroupFinalized(this, id);
}

void iGeometricGroup::updateGeometry(bool force)
{
    if (force || getAsyncUpdate())
        forceGeometryUpdate();
    sigGeometryGroupChanged(this);
}

bool iGeometricGroup::initRendererContainer()
{
    if (!iGeometryRendererManager::hasAttachedRenderer(getClassName()))
        return false;
    for (unsigned int i = getNumChildren(); i > 0; --i)
        if (iBaseModel::isRendererContainer(getChild(i - 1)))
            removeChildren(i - 1, 1);
    _cachedRenderers.clear();
    if (_rendererContainer) {
        insertChild(0, _rendererContainer.get());
        return true;
    }
    _rendererContainer = new osg::Group;
    _rendererContainer->setName(iBaseModel::RendererContainerName);
    iNodeGroup::setNodeFlag(_rendererContainer.get(), 2, false);
    iNodeGroup::setNodeFlag(_rendererContainer.get(), 1, false);
    iNodeGroup::setNodeFlag(_rendererContainer.get(), 5, false);
    insertChild(0, _rendererContainer.get());
    return true;
}

void iGeometricGroup::updateRendererCache()
{
    if (!_cachedRenderers.empty())
        return;
    std::list<std::string> classes;
    if (!iGeometryRendererManager::getRenderClasses(getClassName(), classes))
        return;
    for (std::string const& name : classes) {
        iRoot* made = iRoot::newClass(name.c_str());
        auto* renderer = dynamic_cast<iGeometryRenderer*>(made);
        if (!renderer) {
            // Whatever else the name makes is not ours to keep.
            if (auto* referenced = dynamic_cast<osg::Referenced*>(made)) {
                osg::ref_ptr<osg::Referenced> dropped = referenced;
            } else {
                delete made;
            }
            continue;
        }
        iNodeGroup::setNodeFlag(renderer, 5, false);
        _cachedRenderers.push_back(renderer);
    }
}

void iGeometricGroup::placeRenderers()
{
    for (osg::ref_ptr<osg::Node> const& renderer : _cachedRenderers) {
        osg::Group* node = renderer->asGroup();
        if (!node)
            continue;
        node->removeChildren(0, node->getNumChildren());
        auto* typed = dynamic_cast<iGeometryRenderer*>(node);
        int const priority = typed ? typed->getPriority() : -1;
        unsigned int const count = _rendererContainer->getNumChildren();
        // Negative priorities append; others land at their index, but never
        // after the last child.
        if (priority < 0 || count == 0)
            _rendererContainer->addChild(node);
        else
            _rendererContainer->insertChild(std::min(count - 1, static_cast<unsigned int>(priority)), node);
    }
}

void iGeometricGroup::rebuildRenderers()
{
    for (unsigned int i = 0; i < _rendererContainer->getNumChildren(); ++i) {
        auto* renderer = dynamic_cast<iGeometryRenderer*>(_rendererContainer->getChild(i));
        if (!renderer)
            continue;
        renderer->setGeometryGroup(this);
        renderer->sigRendererUpdating(this);
        renderer->applyRenderMask();
        osg::Node::NodeMask const mask = renderer->getNodeMask();
        if (mask == 0)
            continue;
        // Bits 0 and 1 always count as seen.
        if ((mask & 3u) != 0 || iGeometryRendererManager::canRender(renderer->getRenderMask()))
            renderer->rebuildGeometry(this);
    }
}

void iGeometricGroup::forceGeometryUpdate()
{
    rebuildGeometry();
    if (!_rendererValid) {
        if (!initRendererContainer())
            return;
        validateRenderer();
    }
    _rendererContainer->removeChildren(0, _rendererContainer->getNumChildren());
    updateRendererCache();
    osg::Node::ParentList const& parents = _rendererContainer->getParents();
    if (std::find(parents.begin(), parents.end(), this) == parents.end())
        insertChild(0, _rendererContainer.get());
    placeRenderers();
    rebuildRenderers();
}

void iGeometricGroup::dirtyDrawables()
{
    for (unsigned int i = 0; i < getNumChildren(); ++i) {
        osg::Geode* geode = getChild(i)->asGeode();
        if (!geode)
            continue;
        for (unsigned int d = 0; d < geode->getNumDrawables(); ++d)
            geode->getDrawable(d)->dirtyDisplayList();
    }
    for (osg::ref_ptr<osg::Node> const& node : _cachedRenderers)
        if (auto* renderer = dynamic_cast<iGeometryRenderer*>(node.get()))
            renderer->dirtyDisplayList();
}

void iGeometricGroup::read(iInStream& stream, int version)
{
    if (version == 1) {
        osg::Matrixd m;
        stream.readDoubles(m.ptr(), 16);
        setMatrix(m);
        std::bitset<32> const stored(static_cast<unsigned int>(stream.readInt()));
        std::bitset<32> flags = getFlags();
        flags.set(0, stored.test(1));
        flags.set(1, stored.test(2));
        flags.set(2, stored.test(4));
        setFlags(flags);
    }
    double rgba[4];
    stream.readDoubles(rgba, 4);
    set_clr(osg::Vec4f(static_cast<float>(rgba[0]), static_cast<float>(rgba[1]), static_cast<float>(rgba[2]),
                       static_cast<float>(rgba[3])));
    if (version != 3)
        return;
    set_usecolor(stream.readBool());
    set_usematerial(stream.readBool());
    _materialUid = stream.readInt();
}

void iGeometricGroup::write(iOutStream& stream)
{
    for (int i = 0; i < 4; ++i)
        stream.writeDouble(static_cast<double>(_clr[i]));
    stream.writeBool(_usecolor);
    stream.writeBool(_usematerial);
    stream.writeInt(_materialUid);
}
