#include <iModelStage/model/iTransformGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/model/iMatrixParts.h>

#include <osg/Quat>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

I_REGISTER_PERSISTENT_CLASS(iTransformGroup)
I_REGISTER_PROPERTY_AS(iTransformGroup, iTransformGroup::iDegreeOfFreedom, "iDegreeOfFreedom", dof, "Transform")
I_REGISTER_PROPERTY_AS(iTransformGroup, osg::Vec3f, "osg::Vec3", position, "Transform")
I_REGISTER_PROPERTY_AS(iTransformGroup, osg::Vec3f, "osg::Vec3", rotation, "Transform")
I_REGISTER_PROPERTY_AS(iTransformGroup, osg::Vec3f, "osg::Vec3", scale, "Transform")

namespace {

// Bounds the walk up by first parents, should a host have built a cycle.
constexpr int kMaxAncestors = 1 << 16;

template <class Vec>
Vec maskTranslation(Vec const& v, unsigned dof)
{
    return Vec((dof & 1) ? v.x() : 0, (dof & 2) ? v.y() : 0, (dof & 4) ? v.z() : 0);
}

// Opens the chain of first parents to a default traversal for as long as
// it lives, so that hidden ancestors do not cut the world path; flags are
// not touched.
class UnmaskedAncestry {
public:
    UnmaskedAncestry(osg::Node* node, osg::Node* from) : m_node(node), m_ownMask(node->getNodeMask())
    {
        int steps = 0;
        for (osg::Node* n = from; n && steps < kMaxAncestors; ++steps) {
            m_saved.emplace_back(n, n->getNodeMask());
            n->setNodeMask(0xffffff);
            n = n->getNumParents() > 0 ? n->getParent(0) : nullptr;
        }
        node->setNodeMask(0xffffff);
    }

    ~UnmaskedAncestry()
    {
        for (auto const& entry : m_saved)
            entry.first->setNodeMask(entry.second);
        m_node->setNodeMask(m_ownMask);
    }

    UnmaskedAncestry(UnmaskedAncestry const&) = delete;
    UnmaskedAncestry& operator=(UnmaskedAncestry const&) = delete;

private:
    osg::Node* m_node;
    osg::Node::NodeMask m_ownMask;
    std::vector<std::pair<osg::Node*, osg::Node::NodeMask>> m_saved;
};

} // namespace

iTransformGroup::iTransformGroup() : _scale(1.0f, 1.0f, 1.0f), _dof(DOF_ALL)
{
    set_position(osg::Vec3f(0.0f, 0.0f, 0.0f));
    set_rotation(osg::Vec3f(0.0f, 0.0f, 0.0f));
    set_scale(osg::Vec3f(1.0f, 1.0f, 1.0f));
    set_dof(DOF_ALL);
    _matrixCache = true;
    _ownReactions = true;
}

iTransformGroup::iTransformGroup(iTransformGroup const& other, osg::CopyOp const& copyop)
    : iNodeGroup(other, copyop), _scale(1.0f, 1.0f, 1.0f), _dof(DOF_ALL)
{
    if (this != &other) {
        set_position(other._position);
        set_rotation(other._rotation);
        set_scale(other._scale);
        set_dof(other._dof);
    }
    _matrixCache = true;
    if (other._coordinateSystem)
        _coordinateSystem.reset(new iCoordinateSystem(*other._coordinateSystem));
    _ownReactions = true;
}

iTransformGroup::~iTransformGroup() = default;

void iTransformGroup::slotpositionChanged(iRoot*, osg::Vec3f value)
{
    osg::PositionAttitudeTransform::setPosition(osg::Vec3d(value));
    _matrixCache = true;
    dispatchMatrixChanged(this);
}

void iTransformGroup::slotrotationChanged(iRoot*, osg::Vec3f value)
{
    osg::Quat attitude = osg::Quat(value.x(), osg::Vec3d(1.0, 0.0, 0.0)) *
                         osg::Quat(value.y(), osg::Vec3d(0.0, 1.0, 0.0)) *
                         osg::Quat(value.z(), osg::Vec3d(0.0, 0.0, 1.0));
    osg::PositionAttitudeTransform::setAttitude(attitude);
    _matrixCache = true;
    dispatchMatrixChanged(this);
}

void iTransformGroup::slotscaleChanged(iRoot*, osg::Vec3f value)
{
    osg::PositionAttitudeTransform::setScale(osg::Vec3d(value));
    _matrixCache = true;
    dispatchMatrixChanged(this);
}

void iTransformGroup::dispatchMatrixChanged(osg::Node*)
{
    sigMatrixChanged(this);
}

osg::Vec3f iTransformGroup::applyTranslateDOF(osg::Vec3f const& v) const
{
    if (_dof == DOF_ALL)
        return v;
    return maskTranslation(v, _dof);
}

void iTransformGroup::setPosition(osg::Vec3f const& position)
{
    set_position(applyTranslateDOF(position));
}

void iTransformGroup::setRotation(osg::Vec3f const& rotation)
{
    set_rotation(rotation);
}

void iTransformGroup::setScale(osg::Vec3f const& scale)
{
    set_scale(scale);
}

osg::Matrixd iTransformGroup::getMatrix()
{
    // The cache flag stays set on every path, so the matrix is always
    // recomputed; saving a document asks every transform for it.
    _matrixCache = true;
    return iMatrixParts::compose(osg::Vec3d(_scale), getAttitude(), osg::Vec3d(_position));
}

osg::Matrixd iTransformGroup::getInverseMatrix()
{
    return osg::Matrixd::inverse(getMatrix());
}

void iTransformGroup::setMatrix(osg::Matrixd const& m)
{
    osg::Vec3d translation, scale;
    osg::Quat q;
    iMatrixParts::decompose(m, translation, q, scale);

    double const x = q.x(), y = q.y(), z = q.z(), w = q.w();
    // Rounding can push the sine a hair past one.
    double const sine = std::max(-1.0, std::min(1.0, -2.0 * (z * x - y * w)));
    osg::Vec3f euler(static_cast<float>(std::atan2(2.0 * (x * w + z * y), z * z - (y * y + x * x) + w * w)),
                     static_cast<float>(std::asin(sine)),
                     static_cast<float>(std::atan2(2.0 * (z * w + y * x), x * x - y * y - z * z + w * w)));

    if (_dof != DOF_ALL)
        translation = maskTranslation(translation, _dof);

    osg::PositionAttitudeTransform::setScale(scale);
    osg::PositionAttitudeTransform::setAttitude(q);
    osg::PositionAttitudeTransform::setPosition(translation);

    // The transform base is already set: the properties follow without
    // their reactions, and the matrix change is told once.
    sigslot::signal_blocker position(sigpositionChanged);
    sigslot::signal_blocker rotation(sigrotationChanged);
    sigslot::signal_blocker scaling(sigscaleChanged);

    set_position(osg::Vec3f(translation));
    set_scale(osg::Vec3f(scale));
    set_rotation(euler);

    _matrixCache = true;
    dispatchMatrixChanged(this);
}

osg::Matrixd iTransformGroup::getWorldMatrix()
{
    _matrixCache = true;
    if (getNumParents() == 0)
        return getMatrix();
    osg::MatrixList matrices;
    {
        UnmaskedAncestry open(this, getParent(0));
        matrices = getWorldMatrices(nullptr);
    }
    return matrices.empty() ? getMatrix() : matrices.front();
}

osg::Matrixd iTransformGroup::getInverseWorldMatrix()
{
    return osg::Matrixd::inverse(getWorldMatrix());
}

void iTransformGroup::setWorldMatrix(osg::Matrixd const& m)
{
    if (getNumParents() == 0) {
        setMatrix(m);
        return;
    }
    osg::Node* parent = getParent(0);
    osg::MatrixList matrices;
    {
        UnmaskedAncestry open(this, parent);
        matrices = parent->getWorldMatrices(nullptr);
    }
    setMatrix(matrices.empty() ? m : m * osg::Matrixd::inverse(matrices.front()));
}

iCoordinateSystem iTransformGroup::getCoordinateSystem()
{
    osg::Matrixd const m = getMatrix();
    auto row = [&m](int r) {
        return osg::Vec3f(static_cast<float>(m(r, 0)), static_cast<float>(m(r, 1)), static_cast<float>(m(r, 2)));
    };
    return iCoordinateSystem(row(3), row(0), row(1), row(2));
}

void iTransformGroup::setCoordinateSystem(iCoordinateSystem const& system)
{
    if (_coordinateSystem)
        *_coordinateSystem = system;
    else
        _coordinateSystem.reset(new iCoordinateSystem(system));
    osg::Vec3f const& x = system.xAxis;
    osg::Vec3f const& y = system.yAxis;
    osg::Vec3f const& z = system.zAxis;
    osg::Vec3f const& o = system.origin;
    setMatrix(osg::Matrixd(x.x(), x.y(), x.z(), 0.0, y.x(), y.y(), y.z(), 0.0, z.x(), z.y(), z.z(), 0.0, o.x(), o.y(),
                           o.z(), 1.0));
}

void iTransformGroup::read(iInStream& stream, int)
{
    // Row by row, which is the storage order of osg::Matrixd.
    osg::Matrixd m;
    stream.readDoubles(m.ptr(), 16);
    setMatrix(m);
    set_dof(static_cast<iDegreeOfFreedom>(static_cast<unsigned>(stream.readInt())));
}

void iTransformGroup::write(iOutStream& stream)
{
    stream.writeDoubles(getMatrix().ptr(), 16);
    stream.writeInt(static_cast<int>(static_cast<unsigned>(_dof)));
}
