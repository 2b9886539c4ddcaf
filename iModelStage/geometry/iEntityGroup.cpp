#include <iModelStage/geometry/iEntityGroup.h>

#include <iModelStage/frame/iInStream.h>
#include <iModelStage/frame/iOutStream.h>
#include <iModelStage/geometry/iCircleEntity.h>
#include <iModelStage/geometry/iLineEntity.h>
#include <iModelStage/geometry/iPointEntity.h>
#include <iModelStage/geometry/iPolygonEntity.h>
#include <iModelStage/geometry/iQuadEntity.h>
#include <iModelStage/geometry/iQuoteEntity.h>
#include <iModelStage/geometry/iTextEntity.h>
#include <iModelStage/geometry/iTriangleEntity.h>

#include <memory>
#include <string>

I_REGISTER_PERSISTENT_CLASS(iEntityGroup)

namespace {

// The smallest entry on file: a class name of length 0.
int const kEntryBytes = 4;

osg::Vec3f vertexOr(std::vector<osg::Vec3f> const& vertices, std::size_t index)
{
    return index < vertices.size() ? vertices[index] : osg::Vec3f();
}

// A fresh entity of the source's kind, built from its data. The kind's
// class is trusted only after a checked cast: a type read from a file may
// disagree with the class.
iGeometricEntity* copyOfKind(iGeometricEntity* source)
{
    std::vector<osg::Vec3f> const& vertices = source->getVertices();
    switch (source->getType()) {
    case iGeometricEntity::TRIANGLE_ENTITY:
        return new iTriangleEntity(vertices);
    case iGeometricEntity::QUAD_ENTITY:
        return new iQuadEntity(vertices);
    case iGeometricEntity::POLYGON_ENTITY:
        return new iPolygonEntity(vertices);
    case iGeometricEntity::POINT_ENTITY:
        return new iPointEntity(vertexOr(vertices, 0));
    case iGeometricEntity::LINE_ENTITY:
        return new iLineEntity(vertexOr(vertices, 0), vertexOr(vertices, 1));
    case iGeometricEntity::CIRCLE_ENTITY:
        if (auto* circle = dynamic_cast<iCircleEntity*>(source))
            return new iCircleEntity(circle->getPos(), circle->getRadius());
        return nullptr;
    case iGeometricEntity::TEXT_ENTITY:
        if (auto* text = dynamic_cast<iTextEntity*>(source))
            return new iTextEntity(text->getText(), text->getPos(), text->getSize(), text->getAlignment());
        return nullptr;
    case iGeometricEntity::QUOTE_ENTITY:
        if (auto* quote = dynamic_cast<iQuoteEntity*>(source))
            return new iQuoteEntity(quote->getP1(), quote->getP2(), quote->getSize(), quote->getOffset(),
                                    quote->getText(), quote->getAlignment());
        return nullptr;
    default:
        return nullptr;
    }
}

} // namespace

bool iEntityGroup::getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m)
{
    if (_entities.empty()) {
        min = max = osg::Vec3f();
        return false;
    }
    iGeometricEntity::startBounds(min, max);
    for (osg::ref_ptr<iGeometricEntity> const& entity : _entities) {
        osg::Vec3f low, high;
        if (entity && entity->getBounds(low, high, m))
            iGeometricEntity::growBounds(min, max, low, high);
    }
    return true;
}

iGeometricEntity* iEntityGroup::cloneEntity(iGeometricEntity* entity, osg::Matrixd const& m)
{
    if (!entity)
        return nullptr;
    iGeometricEntity* copy = copyOfKind(entity);
    if (!copy)
        return nullptr;
    copy->applyTransform(m);
    copy->setMatrix(entity->getMatrix());
    copy->setColor(entity->getColor());
    return copy;
}

void iEntityGroup::read(iInStream& stream, int)
{
    int const count = stream.readCount(kEntryBytes);
    for (int i = 0; i < count; ++i) {
        std::string const name = stream.readString();
        iRoot* made = iRoot::newClass(name.c_str());
        if (!made)
            continue;
        // Entities are reference counted; anything else the table makes for
        // that name is read to keep the stream in step and then dropped.
        if (auto* entity = dynamic_cast<iGeometricEntity*>(made)) {
            osg::ref_ptr<iGeometricEntity> held = entity;
            iRoot::readObject(entity, stream);
            _entities.push_back(held);
        } else if (auto* referenced = dynamic_cast<osg::Referenced*>(made)) {
            osg::ref_ptr<osg::Referenced> held = referenced;
            iRoot::readObject(made, stream);
        } else {
            std::unique_ptr<iRoot> held(made);
            iRoot::readObject(made, stream);
        }
    }
    _visible = stream.readBool();
}

void iEntityGroup::write(iOutStream& stream)
{
    stream.writeInt(getSize());
    for (osg::ref_ptr<iGeometricEntity> const& entity : _entities) {
        stream.writeString(entity->getClassName());
        iRoot::writeObject(entity.get(), stream);
    }
    stream.writeBool(_visible);
}
