#include <iModelStage/dimensioning/iBaseQuote.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>

#include <limits>

I_REGISTER_PERSISTENT_CLASS(iBaseQuote)
I_REGISTER_PROPERTY(iBaseQuote, double, arrowheadbase, "Geometry")
I_REGISTER_PROPERTY(iBaseQuote, double, arrowheadlength, "Geometry")
I_REGISTER_PROPERTY(iBaseQuote, double, charsize, "Geometry")

char const* const iBaseQuote::quoteFont = "fonts/tahoma.ttf";

iBaseQuote::iBaseQuote()
{
    build();
    _charsize = 0.1;
    _arrowheadlength = 0.01;
    _arrowheadbase = 0.005;
    connectSlots();
}

iBaseQuote::iBaseQuote(iBaseQuote const& other, osg::CopyOp const& copyop) : iGeometricGroup(other, copyop)
{
    // The copied child list holds the original's transform: each quote has its own.
    removeChild(other._textTransform.get());
    build();
    _charsize = other._charsize;
    _arrowheadlength = other._arrowheadlength;
    _arrowheadbase = other._arrowheadbase;
    setText(other._text);
    connectSlots();
}

iBaseQuote::~iBaseQuote() = default;

void iBaseQuote::build()
{
    _textTransform = new osg::AutoTransform;
    _textTransform->setAutoRotateMode(osg::AutoTransform::ROTATE_TO_SCREEN);
    _textTransform->setAutoScaleToScreen(true);
    _textTransform->setMinimumScale(0.0);
    _textTransform->setMaximumScale(double(std::numeric_limits<float>::max()));
    addChild(_textTransform.get());
    _textDrawable = new osgText::Text;
    _textDrawable->setFont(quoteFont);
}

void iBaseQuote::connectSlots()
{
    sigcharsizeChanged.connect(this, &iBaseQuote::slotcharsizeChanged);
    sigarrowheadlengthChanged.connect(this, &iBaseQuote::slotarrowheadlengthChanged);
    sigarrowheadbaseChanged.connect(this, &iBaseQuote::slotarrowheadbaseChanged);
}

void iBaseQuote::setText(std::string const& text)
{
    _text = text;
    _textDrawable->setText(text);
}

void iBaseQuote::clampSize(double value, void (iBaseQuote::*setter)(double))
{
    if (value < 0.0)
        (this->*setter)(0.0);
    updateGeometry(false);
}

void iBaseQuote::slotcharsizeChanged(iRoot*, double value)
{
    clampSize(value, &iBaseQuote::set_charsize);
}

void iBaseQuote::slotarrowheadlengthChanged(iRoot*, double value)
{
    clampSize(value, &iBaseQuote::set_arrowheadlength);
}

void iBaseQuote::slotarrowheadbaseChanged(iRoot*, double value)
{
    clampSize(value, &iBaseQuote::set_arrowheadbase);
}

void iBaseQuote::read(iInStream& stream, int version)
{
    if (version <= 1)
        return;
    set_charsize(stream.readDouble());
    set_arrowheadlength(stream.readDouble());
    set_arrowheadbase(stream.readDouble());
}

void iBaseQuote::write(iOutStream& stream)
{
    stream.writeDouble(_charsize);
    stream.writeDouble(_arrowheadlength);
    stream.writeDouble(_arrowheadbase);
}
