#ifndef IMODELSTAGE_DIMENSIONING_IBASEQUOTE_H
#define IMODELSTAGE_DIMENSIONING_IBASEQUOTE_H

#include <iModelStage/geometry/iGeometricGroup.h>

#include <osg/AutoTransform>
#include <osgText/Text>

#include <string>

// What every dimension annotation shares: its text and the sizes of
// characters and arrowheads. Lines and arrows are drawn by the renderer
// that the application registers for the concrete class; the text drawable
// is not put in the scene here, a renderer takes it from
// getTextDrawable().
class IMODELSTAGE_EXPORT iBaseQuote : public iGeometricGroup {
    I_CLASS(iBaseQuote, iGeometricGroup, 2)
    I_OSG_NODE(iBaseQuote)
    I_PROPERTY(double, charsize)
    I_PROPERTY(double, arrowheadlength)
    I_PROPERTY(double, arrowheadbase)
public:
    static char const* const quoteFont;

    iBaseQuote();
    iBaseQuote(iBaseQuote const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    std::string const& getText() const { return _text; }
    void setText(std::string const& text);

    osgText::Text* getTextDrawable() { return _textDrawable.get(); }
    osg::AutoTransform* getTextTransform() { return _textTransform.get(); }

    // Version 1 carries nothing of this level.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

    void slotcharsizeChanged(iRoot* source, double value);
    void slotarrowheadlengthChanged(iRoot* source, double value);
    void slotarrowheadbaseChanged(iRoot* source, double value);

protected:
    ~iBaseQuote() override;

    // Sizes cannot be negative: such a value is corrected to zero.
    void clampSize(double value, void (iBaseQuote::*setter)(double));

    osg::ref_ptr<osgText::Text> _textDrawable;
    osg::ref_ptr<osg::AutoTransform> _textTransform;
    std::string _text;

private:
    void build();
    void connectSlots();
};

#endif
