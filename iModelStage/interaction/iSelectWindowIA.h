#ifndef IMODELSTAGE_INTERACTION_ISELECTWINDOWIA_H
#define IMODELSTAGE_INTERACTION_ISELECTWINDOWIA_H

#include <iModelStage/interaction/iRubberBand.h>
#include <iModelStage/interaction/iStackedInteractor.h>

#include <osg/Vec2f>

// Selects by a rectangle dragged over the viewer: rightwards what lies
// wholly inside, leftwards what the rectangle touches.
class IMODELSTAGE_EXPORT iSelectWindowIA : public iStackedInteractor {
    I_CLASS(iSelectWindowIA, iStackedInteractor, 1)
public:
    enum iSelectionMode { iSelectInside = 0, iSelectIntersection = 1 };

    iSelectWindowIA();
    ~iSelectWindowIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    bool click(iIAPoint const& p) override;
    bool move(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;
    void cancel() override;

    iSelectionMode getSelectionMode() const { return _selectionMode; }
    void setSelectionMode(iSelectionMode mode) { _selectionMode = mode; }
    iRubberBand const& getBand() const { return _band; }

protected:
    bool selectInsideRect(osg::Vec2f const& low, osg::Vec2f const& high);
    bool selectIntersectionRect(osg::Vec2f const& low, osg::Vec2f const& high);

private:
    bool isCtrlHeld() const { return (getKeyModifiers() & 1u) != 0; }
    osg::Group* documentObjectOf(osg::Node* object);

    iRubberBand _band;
    iSelectionMode _selectionMode = iSelectInside;
};

#endif
