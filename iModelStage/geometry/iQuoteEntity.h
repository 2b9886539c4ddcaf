#ifndef IMODELSTAGE_GEOMETRY_IQUOTEENTITY_H
#define IMODELSTAGE_GEOMETRY_IQUOTEENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

#include <string>

// A dimension between vertex 0 and vertex 1, with its text set off by
// offset.
class IMODELSTAGE_EXPORT iQuoteEntity : public iGeometricEntity {
    I_CLASS(iQuoteEntity, iGeometricEntity, 1)
    I_OSG_OBJECT(iQuoteEntity)
public:
    explicit iQuoteEntity(osg::Vec3f const& p1 = osg::Vec3f(), osg::Vec3f const& p2 = osg::Vec3f(), double size = 1.0,
                          double offset = 0.1, std::string const& text = std::string(),
                          iAlignment alignment = ALIGN_DEFAULT);
    iQuoteEntity(iQuoteEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricEntity(other, copyop), _text(other._text), _size(other._size), _offset(other._offset),
          _alignment(other._alignment)
    {
    }

    osg::Vec3f getP1() const { return vertexAt(0); }
    void setP1(osg::Vec3f const& p) { setVertexAt(0, p); }
    osg::Vec3f getP2() const { return vertexAt(1); }
    void setP2(osg::Vec3f const& p) { setVertexAt(1, p); }
    std::string const& getText() const { return _text; }
    void setText(std::string const& text) { _text = text; }
    double getSize() const { return _size; }
    void setSize(double size) { _size = size; }
    double getOffset() const { return _offset; }
    void setOffset(double offset) { _offset = offset; }
    iAlignment getAlignment() const { return _alignment; }
    void setAlignment(iAlignment alignment) { _alignment = alignment; }

    // The text, " - " when there is one, and the measured distance.
    std::string getFullText();

    bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m) override;

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iQuoteEntity() override = default;

private:
    std::string _text;
    double _size = 1.0;
    double _offset = 0.1;
    iAlignment _alignment = ALIGN_DEFAULT;
};

#endif
