#ifndef IMODELSTAGE_EDITING_IBASEMANIPULATOR_H
#define IMODELSTAGE_EDITING_IBASEMANIPULATOR_H

#include <iModelStage/interaction/iIAPoint.h>
#include <iModelStage/model/NodeList.h>
#include <iModelStage/model/iTransformGroup.h>

#include <osg/observer_ptr>

class iGeometricsLayer;
class iInteractor;

// A gizmo drawn over the selected objects that starts a tool when the
// user grabs it. It follows the first target's place and rotation but not
// its scale, so it keeps its size; snapping ignores it. Child gizmos
// (added with addManipulator) report through their parent.
class IMODELSTAGE_EXPORT iBaseManipulator : public iTransformGroup {
    I_CLASS(iBaseManipulator, iTransformGroup, 1)
    I_OSG_NODE(iBaseManipulator)
public:
    iBaseManipulator();
    iBaseManipulator(iBaseManipulator const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    virtual void buildGeometry();
    // The tool that does the work, or null.
    virtual iInteractor* execute(iIAPoint const& point, unsigned int keyMods);
    virtual bool isActive();
    virtual void setActive(bool on);
    virtual void slotTargetMatrixChanged(iTransformGroup* source);

    bool inProgress() const { return _inProgress; }
    bool isEnabled() const { return _enabled; }
    void setEnabled(bool on) { _enabled = on; }

    // Stores the pointer; the manager passes its own list.
    void slotSetTargets(NodeList* targets);
    NodeList* getTargets() const { return _targets; }

    void addManipulator(iBaseManipulator* child);
    NodeList const& getChildManipulators() const { return _children; }

    iGeometricsLayer* getGeometricsLayer() { return _layer.get(); }
    void setGeometricsLayer(iGeometricsLayer* layer);

    // Runs execute with the targets kept out of snapping; false when
    // disabled or when execute gives no tool.
    bool start(iIAPoint const& point, unsigned int keyMods);
    void stop();

    sigslot::signal1<iBaseManipulator*> sigExecuted;
    sigslot::signal1<iBaseManipulator*> sigStopped;
    sigslot::signal1<iBaseManipulator*> sigInteractorStateChanged;

protected:
    ~iBaseManipulator() override;

    void interactorStateChanged();
    void slotChildExecuted(iBaseManipulator* child);
    void slotChildStopped(iBaseManipulator* child);
    void slotChildInteractorStateChanged(iBaseManipulator* child);

private:
    void borrowTargets();
    void connectFirstTarget();
    void disconnectFirstTarget();
    static void showCurrentManipulator(bool on);

    bool _active = false;
    bool _inProgress = false;
    bool _enabled = true;
    NodeList _children;
    NodeList* _targets = nullptr;
    osg::observer_ptr<iGeometricsLayer> _layer;
};

#endif
