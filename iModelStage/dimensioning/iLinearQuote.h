#ifndef IMODELSTAGE_DIMENSIONING_ILINEARQUOTE_H
#define IMODELSTAGE_DIMENSIONING_ILINEARQUOTE_H

#include <iModelStage/dimensioning/iBaseQuote.h>

#include <osg/Matrixd>
#include <osg/Vec3f>

// A dimension between two points. In its own frame the measured segment
// runs along x from the origin, the dimension line lies at `offset` along
// y and z is the normal of the plane it is drawn in.
class IMODELSTAGE_EXPORT iLinearQuote : public iBaseQuote {
    I_CLASS(iLinearQuote, iBaseQuote, 2)
    I_OSG_OBJECT(iLinearQuote)
    I_PROPERTY(double, offset)
    I_PROPERTY(double, textoffset)
    I_PROPERTY(bool, fliptext)
    I_PROPERTY(double, extlineoffset)
public:
    iLinearQuote();
    iLinearQuote(iLinearQuote const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // Stores both points without touching the frame.
    void setPoints(osg::Vec3f const& start, osg::Vec3f const& end);
    void setStartPoint(osg::Vec3f const& point);
    void setEndPoint(osg::Vec3f const& point);
    void setNormal(osg::Vec3f const& normal);
    osg::Vec3f const& getStartPoint() const { return _startPoint; }
    osg::Vec3f const& getEndPoint() const { return _endPoint; }
    osg::Vec3f const& getNormal() const { return _normal; }

    // Viewport size and window matrix of the last cull, for renderers that
    // size arrowheads in pixels.
    int getWindowWidth() const { return _windowWidth; }
    int getWindowHeight() const { return _windowHeight; }
    osg::Matrixd const& getMVPW() const { return _mvpw; }

    void accept(osg::NodeVisitor& visitor) override;

    // Version 1 carries nothing of this level. Points are stored as read,
    // leaving the matrix of the transform level in place.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

    void slotoffsetChanged(iRoot* source, double value);
    void slottextoffsetChanged(iRoot* source, double value);
    void slotextlineoffsetChanged(iRoot* source, double value);
    void slotfliptextChanged(iRoot* source, bool value);
    void slotquotecolorChanged(iRoot* source, osg::Vec4f color);

protected:
    ~iLinearQuote() override;

    void updateMatrix();

private:
    void connectSlots();
    void storeAndUpdate(osg::Vec3f& field, osg::Vec3f const& value);

    osg::Vec3f _startPoint;
    osg::Vec3f _endPoint;
    osg::Vec3f _normal;
    int _windowWidth = 0;
    int _windowHeight = 0;
    osg::Matrixd _mvpw;
};

#endif
