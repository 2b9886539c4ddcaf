#ifndef IMODELSTAGE_MODEL_ITRANSFORMGROUP_H
#define IMODELSTAGE_MODEL_ITRANSFORMGROUP_H

#include <iModelStage/model/iCoordinateSystem.h>
#include <iModelStage/model/iNodeGroup.h>

#include <osg/Matrixd>
#include <osg/Vec3f>

#include <memory>

// An object with a place in space. Position, rotation (Euler angles in
// radians about X, Y, Z) and scale are properties, and live a second time
// in the transform base that the scene draws; the class keeps the two in
// step in both directions.
class IMODELSTAGE_EXPORT iTransformGroup : public iNodeGroup {
public:
    // Bits 1, 2 and 4 free translation along X, Y and Z.
    enum iDegreeOfFreedom : unsigned {
        DOF_NONE = 0,
        DOF_TRANSLATE_X = 1,
        DOF_TRANSLATE_Y = 2,
        DOF_TRANSLATE_Z = 4,
        DOF_ALL = 0xffffff
    };

    I_CLASS(iTransformGroup, iNodeGroup, 1)
    I_OSG_NODE(iTransformGroup)

    sigslot::signal1<iTransformGroup*> sigMatrixChanged;

    // Each change is told to the transform base before the after-change
    // signal reaches anyone.
    I_PROPERTY_REACTING(osg::Vec3f, position)
    I_PROPERTY_REACTING(osg::Vec3f, rotation)
    I_PROPERTY_REACTING(osg::Vec3f, scale)
    I_PROPERTY(iDegreeOfFreedom, dof)

public:
    iTransformGroup();
    iTransformGroup(iTransformGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    osg::Vec3f getPosition() const { return _position; }
    osg::Vec3f getRotation() const { return _rotation; }
    osg::Vec3f getScale() const { return _scale; }
    // Through the translation freedom first.
    void setPosition(osg::Vec3f const& position);
    void setRotation(osg::Vec3f const& rotation);
    void setScale(osg::Vec3f const& scale);

    // Scale, then the drawn attitude, then translation, computed afresh at
    // each call: nothing is cached, so nothing can be stale.
    osg::Matrixd getMatrix();
    osg::Matrixd getInverseMatrix();
    // Through hidden ancestors too; every node mask is restored.
    osg::Matrixd getWorldMatrix();
    osg::Matrixd getInverseWorldMatrix();
    // Decomposes m into the transform base, exactly, and into the three
    // properties as Euler angles, with their after-change signals silent;
    // then emits sigMatrixChanged once.
    void setMatrix(osg::Matrixd const& m);
    void setWorldMatrix(osg::Matrixd const& m);

    // Origin and axes from the local matrix; the axes keep the scale.
    iCoordinateSystem getCoordinateSystem();
    void setCoordinateSystem(iCoordinateSystem const& system);

    // True when any bit of mask is free.
    bool testDOF(unsigned int mask) const { return (static_cast<unsigned>(_dof) & mask) != 0; }
    osg::Vec3f applyTranslateDOF(osg::Vec3f const& v) const;
    osg::Vec3f applyRotateDOF(osg::Vec3f const& v) const { return v; }
    osg::Vec3f applyScaleDOF(osg::Vec3f const& v) const { return v; }

    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iTransformGroup() override;

    void dispatchMatrixChanged(osg::Node* node);
    void validateMatrixCache() { _matrixCache = true; }

private:
    // False while a constructor sets the properties: the transform base is
    // then set already, and is not to be recomputed from them.
    bool ownReactions() const { return _ownReactions; }
    void slotpositionChanged(iRoot* source, osg::Vec3f value);
    void slotrotationChanged(iRoot* source, osg::Vec3f value);
    void slotscaleChanged(iRoot* source, osg::Vec3f value);

    bool _matrixCache = true;
    bool _ownReactions = false;
    // Kept only once set: most objects never get one.
    std::unique_ptr<iCoordinateSystem> _coordinateSystem;
};

#endif
