#ifndef IMODELSTAGE_GEOMETRY_ICOMPUTEGEOMBOUNDSVISITOR_H
#define IMODELSTAGE_GEOMETRY_ICOMPUTEGEOMBOUNDSVISITOR_H

#include <iModelStage/frame/iExport.h>

#include <osg/ComputeBoundsVisitor>

class iGeometricGroup;

// The box of what a group's first renderer draws, in the group's local
// space; other renderers and the group's own children do not count. With
// force, a group that has not been built yet, or whose first renderer is
// empty, is built first. The box stays invalid when there is nothing to
// measure.
class IMODELSTAGE_EXPORT iComputeGeomBoundsVisitor : public osg::ComputeBoundsVisitor {
public:
    iComputeGeomBoundsVisitor(iGeometricGroup* group, bool force);

    char const* libraryName() const override { return "iModelStage"; }
    char const* className() const override { return "iComputeGeomBoundsVisitor"; }
};

#endif
