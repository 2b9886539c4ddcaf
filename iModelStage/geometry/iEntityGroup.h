#ifndef IMODELSTAGE_GEOMETRY_IENTITYGROUP_H
#define IMODELSTAGE_GEOMETRY_IENTITYGROUP_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/geometry/iGeometricEntity.h>

#include <osg/ref_ptr>

#include <vector>

// A list of entities with a visibility flag. A plain value: copies share
// their entities.
class IMODELSTAGE_EXPORT iEntityGroup : public iRoot {
    I_CLASS(iEntityGroup, iRoot, 1)
public:
    iEntityGroup() = default;
    iEntityGroup(iEntityGroup const&) = default;
    iEntityGroup& operator=(iEntityGroup const&) = default;
    ~iEntityGroup() override = default;

    // Takes a reference; null is ignored.
    void pushEntity(iGeometricEntity* entity)
    {
        if (entity)
            _entities.push_back(entity);
    }
    std::vector<osg::ref_ptr<iGeometricEntity>> const& getEntities() const { return _entities; }
    int getSize() const { return static_cast<int>(_entities.size()); }
    void clear() { _entities.clear(); }
    bool getVisible() const { return _visible; }
    void setVisible(int visible) { _visible = visible != 0; }

    // The union of the entities' boxes; false, both corners at the origin,
    // when the group is empty.
    bool getBounds(osg::Vec3f& min, osg::Vec3f& max, osg::Matrixd const& m);

    // A new entity of the same kind from the source's data, m baked into its
    // vertices, with the source's matrix and colour; null for kinds 0 and 9.
    // Circles come back with 8 segments, and visibility is not copied.
    static iGeometricEntity* cloneEntity(iGeometricEntity* entity, osg::Matrixd const& m);

    // Reading appends. An entity of a class the program cannot make is not
    // read: its body stays in the stream, which goes on from there.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

private:
    bool _visible = true;
    std::vector<osg::ref_ptr<iGeometricEntity>> _entities;
};

#endif
