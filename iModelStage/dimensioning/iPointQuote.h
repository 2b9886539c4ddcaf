#ifndef IMODELSTAGE_DIMENSIONING_IPOINTQUOTE_H
#define IMODELSTAGE_DIMENSIONING_IPOINTQUOTE_H

#include <iModelStage/dimensioning/iBaseQuote.h>

#include <osg/DrawPixels>
#include <osg/Image>
#include <osg/PositionAttitudeTransform>

// A small flag with the text, drawn in screen pixels with its notch at the
// object's position. Nothing of its own is stored.
class IMODELSTAGE_EXPORT iPointQuote : public iBaseQuote {
    I_CLASS(iPointQuote, iBaseQuote, 1)
    I_OSG_NODE(iPointQuote)
public:
    iPointQuote();
    iPointQuote(iPointQuote const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    osg::Image* getImage() { return _image.get(); }
    osg::PositionAttitudeTransform* getOffsetTransform() { return _offsetTransform.get(); }

protected:
    ~iPointQuote() override;

    // Paints the flag into the image; without an application object no
    // font can be measured, and the image is left empty.
    void rebuildGeometry() override;

private:
    void build();

    osg::ref_ptr<osg::PositionAttitudeTransform> _offsetTransform;
    osg::ref_ptr<osg::Image> _image;
    osg::ref_ptr<osg::DrawPixels> _drawPixels;
    osg::ref_ptr<osg::Drawable> _drawable;
    std::vector<unsigned char> _bits;
};

#endif
