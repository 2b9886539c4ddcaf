#ifndef IMODELSTAGE_EDITING_IBASEHANDLE_H
#define IMODELSTAGE_EDITING_IBASEHANDLE_H

#include <iModelStage/geometry/iGeometricGroup.h>

// A draggable marker on one vertex of an edited object, living in the
// editing layer. It knows only its place in the object's list of handles;
// the editing data turns its moves into changes of the object. Snapping
// passes over it and it is never cloned.
class IMODELSTAGE_EXPORT iBaseHandle : public iGeometricGroup {
    I_CLASS(iBaseHandle, iGeometricGroup, 1)
    I_OSG_NODE(iBaseHandle)
public:
    iBaseHandle();
    iBaseHandle(iBaseHandle const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    int getIndex() const { return _index; }
    void setIndex(int index) { _index = index; }

protected:
    ~iBaseHandle() override;

private:
    int _index = 0;
};

#endif
