#ifndef IMODELSTAGE_INTERACTION_IMIRRORIA_H
#define IMODELSTAGE_INTERACTION_IMIRRORIA_H

#include <iModelStage/interaction/iTransformIA.h>

// Mirrors the selection in x or y about a point, until closed; the
// unchanged clones stay in view as a ghost of the sources.
class IMODELSTAGE_EXPORT iMirrorIA : public iTransformIA {
    I_CLASS(iMirrorIA, iTransformIA, 1)
    I_PROPERTY(int, axis)
public:
    iMirrorIA();
    ~iMirrorIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void start() override;
    bool release(iIAPoint const& p) override;
    void cancel() override;
    void close() override;

protected:
    void init() override;
    void applyMirror(osg::Vec3f const& point);
    void slotAxisChanged(iRoot*, int);
private:
    std::vector<osg::ref_ptr<osg::Node>> _clones;
    std::vector<osg::Matrixd> _cloneStartMatrices;
};

#endif
