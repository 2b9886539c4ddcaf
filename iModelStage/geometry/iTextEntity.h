#ifndef IMODELSTAGE_GEOMETRY_ITEXTENTITY_H
#define IMODELSTAGE_GEOMETRY_ITEXTENTITY_H

#include <iModelStage/geometry/iGeometricEntity.h>

#include <string>

// A line of text whose start stands at vertex 0.
class IMODELSTAGE_EXPORT iTextEntity : public iGeometricEntity {
    I_CLASS(iTextEntity, iGeometricEntity, 1)
    I_OSG_OBJECT(iTextEntity)
public:
    explicit iTextEntity(std::string const& text = std::string(), osg::Vec3f const& pos = osg::Vec3f(),
                         double size = 1.0, iAlignment alignment = ALIGN_DEFAULT);
    iTextEntity(iTextEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY)
        : iGeometricEntity(other, copyop), _text(other._text), _size(other._size), _alignment(other._alignment)
    {
    }

    osg::Vec3f getPos() const { return vertexAt(0); }
    void setPos(osg::Vec3f const& pos) { setVertexAt(0, pos); }
    std::string const& getText() const { return _text; }
    void setText(std::string const& text) { _text = text; }
    double getSize() const { return _size; }
    void setSize(double size) { _size = size; }
    iAlignment getAlignment() const { return _alignment; }
    void setAlignment(iAlignment alignment) { _alignment = alignment; }

    // From the position, one size per character wide and one size high.
    bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m) override;

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iTextEntity() override = default;

private:
    std::string _text;
    double _size = 1.0;
    iAlignment _alignment = ALIGN_DEFAULT;
};

#endif
