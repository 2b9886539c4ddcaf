#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICENTITY_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICENTITY_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Matrixd>
#include <osg/Object>
#include <osg/Vec3f>
#include <osg/Vec4f>

#include <vector>

// A neutral drawing primitive: points in local space, a colour and a local
// to model matrix. Renderers describe what they draw with these, for
// exporters and anything else that wants geometry without a scene graph.
//
// A point p goes to model space as p * matrix (row vectors), then through
// the caller's matrix in the same way.
//
// Copying through the copy constructor or clone() carries the osg::Object
// part only; cloneEntity of iEntityGroup is the way to copy an entity.
class IMODELSTAGE_EXPORT iGeometricEntity : public iRoot, public osg::Object {
public:
    enum iGeometryRendererType : int {
        GEOMETRIC_ENTITY = 0,
        TRIANGLE_ENTITY = 1,
        QUAD_ENTITY = 2,
        POLYGON_ENTITY = 3,
        POINT_ENTITY = 4,
        LINE_ENTITY = 5,
        CIRCLE_ENTITY = 6,
        TEXT_ENTITY = 7,
        QUOTE_ENTITY = 8,
        POLYLINE_ENTITY = 9
    };

    // Agreed between renderers and exporters; stored and streamed as an int.
    enum iAlignment : int { ALIGN_DEFAULT = 0 };

    I_CLASS(iGeometricEntity, iRoot, 1)
    I_OSG_OBJECT(iGeometricEntity)

public:
    iGeometricEntity();
    iGeometricEntity(iGeometryRendererType type, std::vector<osg::Vec3f> const& vertices);
    iGeometricEntity(iGeometricEntity const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    iGeometryRendererType getType() const { return _type; }
    std::vector<osg::Vec3f>& getVertices() { return _vertices; }
    std::vector<osg::Vec3f> const& getVertices() const { return _vertices; }
    void setVertices(std::vector<osg::Vec3f> const& vertices) { _vertices = vertices; }
    void pushVertex(osg::Vec3f const& vertex) { _vertices.push_back(vertex); }
    osg::Vec4f const& getColor() const { return _color; }
    void setColor(osg::Vec4f const& color) { _color = color; }
    bool getVisible() const { return _visible; }
    void setVisible(int visible) { _visible = visible != 0; }
    osg::Matrixd const& getMatrix() const { return _matrix; }
    osg::Matrixd const& getInverseMatrix() const { return _inverseMatrix; }
    void setMatrix(osg::Matrixd const& matrix);

    // Newell's normal of the outline, last vertex joined to the first, turned
    // by the upper 3x3 of the matrix and not normalised again.
    virtual osg::Vec3f getNormal();
    // False, with both corners at the origin, when there are no vertices.
    virtual bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m);
    // Bakes m into the vertices; the matrix stays.
    virtual void applyTransform(osg::Matrixd const& m);
    // The vertices in model space, then through m.
    virtual std::vector<osg::Vec3f> getGeometry(osg::Matrixd const& m);

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

    // A box to grow: corners at +9e9 and -9e9.
    static void startBounds(osg::Vec3f& min, osg::Vec3f& max);
    // Widens min and max to take in the box from low to high.
    static void growBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Vec3f const& low, osg::Vec3f const& high);

protected:
    ~iGeometricEntity() override = default;

    // p through the matrix, then through m.
    osg::Vec3f toModel(osg::Vec3f const& p, osg::Matrixd const& m) const;
    // The vertex at index, or the origin when the list is shorter.
    osg::Vec3f vertexAt(std::size_t index) const;
    void setVertexAt(std::size_t index, osg::Vec3f const& p);
    // The box of a and b taken to model space; always true.
    bool boundsOfTwo(osg::Vec3f const& a, osg::Vec3f const& b, osg::Vec3f& min, osg::Vec3f& max,
                     osg::Matrixd const& m) const;

    iGeometryRendererType _type = GEOMETRIC_ENTITY;
    std::vector<osg::Vec3f> _vertices;
    osg::Vec4f _color;
    osg::Matrixd _matrix;
    osg::Matrixd _inverseMatrix;
    bool _visible = true;
};

// The body of a kind whose vertices are any list, kept as given.
#define I_VERTEX_LIST_ENTITY(Class, Kind)                                                                             \
    I_CLASS(Class, iGeometricEntity, 1)                                                                               \
    I_OSG_OBJECT(Class)                                                                                               \
public:                                                                                                               \
    explicit Class(std::vector<osg::Vec3f> const& vertices = std::vector<osg::Vec3f>())                              \
        : iGeometricEntity(Kind, vertices)                                                                            \
    {                                                                                                                 \
    }                                                                                                                 \
    Class(Class const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY) : iGeometricEntity(other, copyop) \
    {                                                                                                                 \
    }                                                                                                                 \
                                                                                                                      \
protected:                                                                                                            \
    ~Class() override = default;                                                                                      \
                                                                                                                      \
public:

#endif
