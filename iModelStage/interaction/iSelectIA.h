#ifndef IMODELSTAGE_INTERACTION_ISELECTIA_H
#define IMODELSTAGE_INTERACTION_ISELECTIA_H

#include <iModelStage/interaction/iHitGeometries.h>
#include <iModelStage/interaction/iInteractor.h>

#include <QList>
#include <QMap>

#include <memory>

class QAction;
class iActionHoveredHandler;

// Selects the object under the cursor. Several candidates open a menu of
// them, whose hovered entry is previewed as selected; a drag from empty
// space becomes a window selection. Ctrl toggles instead of replacing.
class IMODELSTAGE_EXPORT iSelectIA : public iInteractor {
    I_CLASS(iSelectIA, iInteractor, 1)
public:
    iSelectIA();
    ~iSelectIA() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void start() override;
    bool move(iIAPoint const& p) override;
    bool click(iIAPoint const& p) override;
    bool release(iIAPoint const& p) override;

    int getPickedCount() const { return _pickedCount; }
    QList<QAction*> const& getMenuActions() const { return _menuActions; }

protected:
    void selectSingle(iIAPoint const& p);

private:
    friend class iActionHoveredHandler;

    struct Pair {
        osg::Group* parent = nullptr;
        osg::Node* node = nullptr;
    };

    bool isCtrlHeld() const { return (getKeyModifiers() & 1u) != 0; }
    void collectCandidates(osgUtil::PolytopeIntersector::Intersections const& hits, Pair& fallback);
    Pair firstSelectable(osgUtil::PolytopeIntersector::Intersections const& hits);
    bool chooseFromMenu(Pair& pair);
    void takeBackPreviews();
    void applyPick(Pair const& pair, bool ctrl);
    void postRelease(iIAPoint const& p);

    std::unique_ptr<iActionHoveredHandler> _hoverHandler;
    QList<QAction*> _menuActions;
    QMap<osg::Group*, osg::Node*> _candidates;
    int _pickedCount = 0;
    iIAPoint _clickPosition;
};

#endif
