#ifndef IMODELSTAGE_GEOMETRY_IGRIDGROUP_H
#define IMODELSTAGE_GEOMETRY_IGRIDGROUP_H

#include <iModelStage/geometry/iGeometricGroup.h>

namespace osg {
class Geode;
class StateSet;
} // namespace osg

// A reference grid on the XY plane of its own transform: a translucent
// background plane, guide lines with every n-th line in a stronger colour,
// and the two axes. It has no renderer: rebuildGeometry() makes three
// geodes as direct children (plane, lines, axes), and a hidden part is
// still built, with node mask 0.
//
// A grid can be neither selected nor deleted. Every property of its own
// level rebuilds it: at once outside a layer, at the next frame in one.
class IMODELSTAGE_EXPORT iGridGroup : public iGeometricGroup {
    I_CLASS(iGridGroup, iGeometricGroup, 1)
    I_OSG_NODE(iGridGroup)
    I_PROPERTY(bool, planevisible)
    I_PROPERTY(bool, gridvisible)
    I_PROPERTY(bool, axisvisible)
    I_PROPERTY(iColor4, bg)
    I_PROPERTY(double, hstep)
    I_PROPERTY(double, vstep)
    I_PROPERTY(int, nhs)
    I_PROPERTY(int, nvs)
    I_PROPERTY(iColor4, clrh)
    I_PROPERTY(iColor4, clrv)
    I_PROPERTY(int, nhq)
    I_PROPERTY(int, vvq)
    I_PROPERTY(iColor4, clrvq)
    I_PROPERTY(iColor4, clrhq)
public:
    // Lines drawn per side along one axis at most, whatever nhs or nvs say:
    // a damaged file must not ask for gigabytes of vertices.
    static constexpr int MaxLinesPerSide = 100000;

    iGridGroup();
    iGridGroup(iGridGroup const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    // The version is not consulted: the record has one form.
    void read(iInStream& stream, int version);
    void write(iOutStream& stream);

protected:
    ~iGridGroup() override;

    void rebuildGeometry() override;
    void slotPropertyChanged(iRoot* source, char const* name);

private:
    void setDefaults();
    osg::Geode* buildPlane(float w, float h);
    osg::Geode* buildLines(float w, float h);
    osg::Geode* buildAxes(float w, float h);
};

#endif
