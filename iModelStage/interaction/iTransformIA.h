#ifndef IMODELSTAGE_INTERACTION_ITRANSFORMIA_H
#define IMODELSTAGE_INTERACTION_ITRANSFORMIA_H

#include <iModelStage/interaction/iInteractor.h>

#include <osg/Matrixd>
#include <osg/Node>
#include <osg/ref_ptr>

#include <initializer_list>
#include <set>
#include <string>
#include <vector>

// What the tools that move, turn, scale and mirror the selection share:
// the targets and their world matrices at the start, one undo step per
// run, and the copy mode that moves clones instead of the sources.
class IMODELSTAGE_EXPORT iTransformIA : public iInteractor {
    I_CLASS(iTransformIA, iInteractor, 1)
    I_PROPERTY(bool, makecopy)
public:
    iTransformIA();
    ~iTransformIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void start() override;
    bool release(iIAPoint const& p) override;
    void cancel() override;
    void end() override;
    void close() override;

    std::vector<osg::ref_ptr<osg::Node>> const& getTargets() const { return _targets; }

protected:
    virtual void applyTransform() {}

    void beginTransform();
    void endTransform();
    void cancelTransform();

    // Every target's world matrix becomes its start matrix times m.
    void transformFromStart(std::vector<osg::Matrixd> const& starts, osg::Matrixd const& m);
    // The prompts of the steps, all of points with a zero default.
    void addTransformSteps(std::initializer_list<char const*> prompts);
    // The camera line through the window position of p's global point, and
    // the first target's world matrix; false outside the second step,
    // without targets or viewer.
    bool cameraLineAt(iIAPoint const& p, osg::Vec3f& near, osg::Vec3f& far, osg::Matrixd& targetMatrix);
    // Every target's world matrix becomes its start matrix moved by delta.
    void translateFromStart(osg::Vec3f const& delta);
    // Tools that move the selection by a point found under the cursor (on an
    // axis, in a plane) say here where that point is; false when there is
    // none.
    virtual bool cursorPoint(iIAPoint const&, osg::Vec3f&) { return false; }
    // At a release, the cursor's point becomes the anchor of the next move.
    bool anchorAtCursor(iIAPoint const& p);
    // At a move, the selection follows the cursor's point from the anchor.
    bool dragToCursor(iIAPoint const& p);
    // The classes a transform tool acts on.
    static std::set<std::string>& targetClasses();

    std::vector<osg::Matrixd> _startMatrices;
    std::vector<osg::ref_ptr<osg::Node>> _targets;
    // Of the tools that follow the cursor: the first target's world matrix,
    // the anchor and how far the cursor's point is from it.
    osg::Matrixd _targetMatrix;
    osg::Vec3f _anchor;
    osg::Vec3f _delta;
};

#endif
