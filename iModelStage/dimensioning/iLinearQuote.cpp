#include <iModelStage/dimensioning/iLinearQuote.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <osg/CullStack>
#include <osg/NodeVisitor>

I_REGISTER_PERSISTENT_CLASS(iLinearQuote)
I_REGISTER_PROPERTY(iLinearQuote, double, extlineoffset, "Geometry")
I_REGISTER_PROPERTY(iLinearQuote, double, offset, "Geometry")
I_REGISTER_PROPERTY(iLinearQuote, double, textoffset, "Geometry")
I_REGISTER_PROPERTY(iLinearQuote, bool, fliptext, "Geometry")

namespace {

osg::Vec3d readVec3(iInStream& stream)
{
    osg::Vec3d v;
    v.x() = stream.readDouble();
    v.y() = stream.readDouble();
    v.z() = stream.readDouble();
    return v;
}

void writeVec3(iOutStream& stream, osg::Vec3f const& v)
{
    for (int i = 0; i < 3; ++i)
        stream.writeDouble(double(v[i]));
}

} // namespace

iLinearQuote::iLinearQuote()
{
    _textTransform->setAutoRotateMode(osg::AutoTransform::NO_ROTATION);
    _extlineoffset = 0.01;
    connectSlots();
}

iLinearQuote::iLinearQuote(iLinearQuote const& other, osg::CopyOp const& copyop)
    : iBaseQuote(other, copyop), _startPoint(other._startPoint), _endPoint(other._endPoint), _normal(other._normal)
{
    _textTransform->setAutoRotateMode(osg::AutoTransform::NO_ROTATION);
    _offset = other._offset;
    _textoffset = other._textoffset;
    _fliptext = other._fliptext;
    _extlineoffset = other._extlineoffset;
    connectSlots();
}

iLinearQuote::~iLinearQuote() = default;

void iLinearQuote::connectSlots()
{
    sigoffsetChanged.connect(this, &iLinearQuote::slotoffsetChanged);
    sigtextoffsetChanged.connect(this, &iLinearQuote::slottextoffsetChanged);
    sigextlineoffsetChanged.connect(this, &iLinearQuote::slotextlineoffsetChanged);
    sigfliptextChanged.connect(this, &iLinearQuote::slotfliptextChanged);
    sigclrChanged.connect(this, &iLinearQuote::slotquotecolorChanged);
}

void iLinearQuote::slotoffsetChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLinearQuote::slottextoffsetChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLinearQuote::slotextlineoffsetChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLinearQuote::slotfliptextChanged(iRoot*, bool)
{
    updateGeometry(false);
}

void iLinearQuote::slotquotecolorChanged(iRoot*, osg::Vec4f)
{
    updateGeometry(false);
}

void iLinearQuote::setPoints(osg::Vec3f const& start, osg::Vec3f const& end)
{
    _startPoint = start;
    _endPoint = end;
}

void iLinearQuote::storeAndUpdate(osg::Vec3f& field, osg::Vec3f const& value)
{
    field = value;
    updateMatrix();
    updateGeometry(false);
}

void iLinearQuote::setStartPoint(osg::Vec3f const& point)
{
    storeAndUpdate(_startPoint, point);
}

void iLinearQuote::setEndPoint(osg::Vec3f const& point)
{
    storeAndUpdate(_endPoint, point);
}

void iLinearQuote::setNormal(osg::Vec3f const& normal)
{
    storeAndUpdate(_normal, normal);
}

void iLinearQuote::updateMatrix()
{
    osg::Vec3f u = _endPoint - _startPoint;
    if (u.length() > 0.0f)
        u.normalize();
    osg::Vec3f const n = _normal;
    osg::Vec3f w = n ^ u;
    if (w.length() > 0.0f)
        w.normalize();
    setWorldMatrix(osg::Matrixd(u.x(), u.y(), u.z(), 0.0, w.x(), w.y(), w.z(), 0.0, n.x(), n.y(), n.z(), 0.0,
                                _startPoint.x(), _startPoint.y(), _startPoint.z(), 1.0));
}

void iLinearQuote::accept(osg::NodeVisitor& visitor)
{
    if (!visitor.validNodeMask(*this))
        return;
    if (visitor.getVisitorType() == osg::NodeVisitor::CULL_VISITOR) {
        if (osg::CullStack* cull = visitor.asCullStack()) {
            if (osg::Viewport const* viewport = cull->getViewport()) {
                _windowWidth = static_cast<int>(viewport->width());
                _windowHeight = static_cast<int>(viewport->height());
            }
            if (osg::RefMatrix const* mvpw = cull->getMVPW())
                _mvpw = *mvpw;
        }
    }
    visitor.pushOntoNodePath(this);
    visitor.apply(*this);
    visitor.popFromNodePath();
}

void iLinearQuote::read(iInStream& stream, int version)
{
    if (version <= 1)
        return;
    osg::Vec3f const start = readVec3(stream);
    osg::Vec3f const end = readVec3(stream);
    _normal = readVec3(stream);
    setPoints(start, end);
    set_offset(stream.readDouble());
    set_textoffset(stream.readDouble());
    set_fliptext(stream.readBool());
    set_extlineoffset(stream.readDouble());
}

void iLinearQuote::write(iOutStream& stream)
{
    writeVec3(stream, _startPoint);
    writeVec3(stream, _endPoint);
    writeVec3(stream, _normal);
    stream.writeDouble(_offset);
    stream.writeDouble(_textoffset);
    stream.writeBool(_fliptext);
    stream.writeDouble(_extlineoffset);
}
