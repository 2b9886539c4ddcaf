#include <iModelStage/dimensioning/iLeader.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

I_REGISTER_PERSISTENT_CLASS(iLeader)
I_REGISTER_PROPERTY(iLeader, bool, flip, "Geometry")
I_REGISTER_PROPERTY(iLeader, double, bleaderline, "Geometry")
I_REGISTER_PROPERTY(iLeader, double, hleaderline, "Geometry")
I_REGISTER_PROPERTY(iLeader, double, lenlandingline, "Geometry")

iLeader::iLeader()
{
    setColor(osg::Vec4f(1.0f, 1.0f, 1.0f, 1.0f));
    _bleaderline = 0.05;
    _hleaderline = 0.05;
    _lenlandingline = 0.05;
    connectSlots();
}

iLeader::iLeader(iLeader const& other, osg::CopyOp const& copyop) : iBaseQuote(other, copyop)
{
    _bleaderline = other._bleaderline;
    _hleaderline = other._hleaderline;
    _lenlandingline = other._lenlandingline;
    _flip = other._flip;
    connectSlots();
}

iLeader::~iLeader() = default;

void iLeader::connectSlots()
{
    sigbleaderlineChanged.connect(this, &iLeader::slotbleaderlineChanged);
    sighleaderlineChanged.connect(this, &iLeader::slothleaderlineChanged);
    siglenlandinglineChanged.connect(this, &iLeader::slotlenlandinglineChanged);
    sigflipChanged.connect(this, &iLeader::slotflipChanged);
    sigclrChanged.connect(this, &iLeader::slotquotecolorChanged);
    sigMatrixChanged.connect(this, &iLeader::slotMatrixChanged);
}

void iLeader::slotbleaderlineChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLeader::slothleaderlineChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLeader::slotlenlandinglineChanged(iRoot*, double)
{
    updateGeometry(false);
}

void iLeader::slotflipChanged(iRoot*, bool)
{
    updateGeometry(false);
}

void iLeader::slotquotecolorChanged(iRoot*, osg::Vec4f)
{
    updateGeometry(false);
}

void iLeader::slotMatrixChanged(iTransformGroup*)
{
    updateGeometry(false);
}

void iLeader::read(iInStream& stream, int)
{
    set_bleaderline(stream.readDouble());
    set_hleaderline(stream.readDouble());
    set_lenlandingline(stream.readDouble());
    set_flip(stream.readBool());
}

void iLeader::write(iOutStream& stream)
{
    stream.writeDouble(_bleaderline);
    stream.writeDouble(_hleaderline);
    stream.writeDouble(_lenlandingline);
    stream.writeBool(_flip);
}
