#pragma once

#include <iModelStage/geometry/iGeometricGroup.h>
#include <iModelStage/interaction/iInteractor.h>

#include <initializer_list>

// What the workbench's drawing tools share. The shape under construction
// hangs in the tool's feedback layer (which follows the input plane, so
// the shape is placed in input-plane coordinates) from the first point on;
// when the tool ends, the shape enters the document where it was seen, as
// one undo step named after the tool. Cancelling changes no document.
class wbCreateShapeIA : public iInteractor {
    I_CLASS(wbCreateShapeIA, iInteractor, 1)
public:
    wbCreateShapeIA();
    ~wbCreateShapeIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void start() override;
    void goBack() override;
    void cancel() override;
    void end() override;

    // The shape being drawn; null before the tool starts and after it
    // hands the shape over.
    iGeometricGroup* getShape() { return _shape.get(); }

protected:
    // Below this, two points count as one.
    static constexpr float MinimumSide = 0.001f;

    virtual iGeometricGroup* newShape() = 0;

    // The prompts of the steps, translated, all of points with a zero
    // default; the last one is the closing message.
    void addShapeSteps(std::initializer_list<char const*> prompts);
    // Shows the shape in the feedback layer, placed at a local point.
    void showShapeAt(osg::Vec3f const& local);
    void dropShape();
    // Stores the undo step and adds the shape to the document; false
    // without a shape or a layer.
    bool handOver();
    // Tells the user why a point was not taken; the step is not counted.
    bool refusePoint();
    // Distance in the input plane from the last released point.
    double planeDistance(iIAPoint const& p) const;
    bool tooClose(iIAPoint const& p) const;
    // The height that a third point gives: its distance in the input plane
    // from the last released point; where that is nil, fallback.
    double heightTo(iIAPoint const& p, double fallback) const;

    osg::ref_ptr<iGeometricGroup> _shape;
};
