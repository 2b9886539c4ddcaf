#ifndef IMODELSTAGE_INTERACTION_IINTERACTOR_H
#define IMODELSTAGE_INTERACTION_IINTERACTOR_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/interaction/iIAPoint.h>

#include <QString>

#include <osg/Group>
#include <osg/Matrixd>
#include <osg/observer_ptr>
#include <osg/ref_ptr>

#include <string>
#include <vector>

class iGeometricsLayer;
class iInputPlane;
class iTransformGroup;
class iViewer;

// One interactive tool: a small state machine fed with 3D points. It walks
// a list of numbered steps, each with a prompt, draws its feedback below
// its own interactive layer, and finishes by ending, closing or being
// cancelled. The interactor manager pushes, pops and deletes it; the
// viewer's event handler feeds it.
//
// States: 0 idle, 1 started, 2 working (clicked), 3 ended, 4 closed,
// 5 cancelled. A tool is never stored in a document.
class IMODELSTAGE_EXPORT iInteractor : public iRoot {
    I_CLASS(iInteractor, iRoot, 1)
public:
    enum iInteractorTypes { iIATypeNone = 0, iIATypeInt, iIATypeDouble, iIATypeVec2, iIATypeVec3 };
    enum MessageType { iIAMessageInfo = 0, iIAMessageError = 1 };

    enum iInteractorState {
        iIAStateIdle = 0,
        iIAStateStarted = 1,
        iIAStateWorking = 2,
        iIAStateEnded = 3,
        iIAStateClosed = 4,
        iIAStateCancelled = 5
    };

    // A step: its prompt, what a typed value must be, and a default value.
    struct iInteractorStep {
        QString message;
        iInteractorTypes type = iIATypeVec3;
        osg::Vec3f value;
    };

    iInteractor();
    ~iInteractor() override;
    iInteractor(iInteractor const&) = delete;
    iInteractor& operator=(iInteractor const&) = delete;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    virtual void reset();
    virtual void goBack();
    virtual void start();
    virtual bool move(iIAPoint const& p);
    virtual bool click(iIAPoint const& p);
    virtual bool release(iIAPoint const& p);
    virtual bool keyPressed(int key);
    virtual bool keyReleased(int key);
    virtual void cancel();
    virtual void end();
    virtual void close();
    // Bits 0, 1, 2 free the x, y, z of a point against the last released
    // one; 4 alone moves along the input plane's normal.
    virtual int getIPlaneConstraint(int step);
    virtual bool canAccept();
    virtual bool canCancel();

    int getNumSteps() const { return _numSteps; }
    void setNumSteps(int n) { _numSteps = n; }
    int getCurrentStep() const { return _currentStep; }
    bool getDragging() const { return _dragging; }
    bool getClicked() const { return _clicked; }
    int getState() const { return _state; }

    bool isPersistent() const { return _persistent; }
    void setPersistent(bool on) { _persistent = on; }
    bool isContinuos() const { return _continuos; }
    void setContinuos(bool on);
    bool isLinked() const { return _linked; }
    void setLinked(bool on);
    bool getAcceptSnap() const { return _acceptSnap; }
    void setAcceptSnap(bool on) { _acceptSnap = on; }
    bool isStacked() const { return _stacked; }
    void setStacked(bool on) { _stacked = on; }
    bool isImmediate() const { return _immediate; }
    void setImmediate(bool on) { _immediate = on; }
    bool getAllowConstructionLines() const { return _allowConstructionLines; }
    void setAllowConstructionLines(bool on) { _allowConstructionLines = on; }
    bool getRestoreInputPlane() const { return _restoreInputPlane; }
    void setRestoreInputPlane(bool on) { _restoreInputPlane = on; }
    bool getILayerFollowIPlane() const { return _iLayerFollowIPlane; }
    void setILayerFollowIPlane(bool on);

    iIAPoint const& getLastReleasedPos() const { return _lastReleasedPos; }
    iIAPoint const& getStartPos() const { return _startPos; }
    iIAPoint const& getCurrentPos() const { return _currentPos; }
    // The point of the most recent release of any tool.
    static iIAPoint const& getLastInputPos();

    iInteractorTypes getStepDefaultType() const { return _stepDefaultType; }
    void setStepDefaultType(iInteractorTypes type) { _stepDefaultType = type; }

    iViewer* getViewer() const;
    void setViewer(iViewer* viewer);

    osg::Group* getILayer();

    unsigned int getKeyModifiers() const { return _keyModifiers; }
    void setKeyModifiers(unsigned int modifiers) { _keyModifiers = modifiers; }

    iInputPlane* getPrevIPlane();
    void setPrevIPlane(iInputPlane* plane);

    unsigned int getSnapBevahior() const { return _snapBevahior; }
    void setSnapBevahior(unsigned int behaviour) { _snapBevahior = behaviour; }

    // The layer held, else the viewer's model, else the document's
    // "iGeometricsLayer"; what is found is kept.
    iGeometricsLayer* getGeometricsLayer();
    // Moves the interactive layer to the new layer's interactive group.
    void setGeometricsLayer(iGeometricsLayer* layer);
    bool isGeometryLayerLocked() const { return _geometryLayerLocked; }
    // Returns the former value.
    bool lockGeometricLayer(bool lock);

    QString getCurrentMessage() const;
    iInteractorTypes getCurrentStepType() const;
    // Asks for a redraw at the next loop of the manager.
    void update() { _needsUpdate = true; }
    bool getNeedsUpdate() const { return _needsUpdate; }

    // The input plane's frame and back; the identity without a viewer.
    osg::Matrixd getLocalToWorldMatrix();
    osg::Matrixd getWorldToLocalMatrix();
    // A frame at position whose x axis runs along direction, for feedback
    // drawn along a line.
    osg::Matrixd computeIPlaneMatrix(osg::Vec3f const& position, osg::Vec3f const& direction);

    sigslot::signal2<QString, MessageType> sigMessage;
    sigslot::signal1<bool> sigContinuosChanged;
    sigslot::signal1<bool> sigLinkedChanged;
    sigslot::signal1<iIAPoint> sigMoved;
    sigslot::signal1<iIAPoint> sigClicked;
    sigslot::signal1<iIAPoint> sigReleased;
    sigslot::signal0<> sigCancelled;
    sigslot::signal0<> sigEnded;
    sigslot::signal0<> sigClosed;
    sigslot::signal0<> sigChanged;
    sigslot::signal2<iViewer*, iViewer*> sigViewerChanged;

protected:
    friend class iInteractorManager;

    // Runs once, from the push, with viewer and layer known.
    virtual void init();
    // The per-frame redraw, while started or working and asked for.
    virtual void doUpdate();

    void addStep(QString const& message, iInteractorTypes type, osg::Vec3f const& value);
    void clearSteps() { _steps.clear(); }
    void setCurrentStep(int step);
    void emitMessage(QString const& message, MessageType type);
    // Opens an undo step before the tool's first change.
    void storeForUndo(std::string const& text);
    void cancelUndoStore();
    void setLastReleasedPos(iIAPoint const& p) { _lastReleasedPos = p; }
    // Window position of a world point; false without a viewer.
    bool project3DTo2D(osg::Vec3f const& world, osg::Vec3f& window);

    void slotLayerSelectionChanged();
    void slotUpdateIPlaneMatrix();

    std::vector<iInteractorStep> const& getSteps() const { return _steps; }

private:
    void emitCurrentMessage();
    void removeILayerFrom(iGeometricsLayer* layer);

    int _numSteps = 0;
    int _currentStep = 0;
    bool _dragging = false;
    bool _clicked = false;
    int _state = iIAStateIdle;
    bool _persistent = false;
    bool _continuos = false;
    bool _linked = false;
    bool _acceptSnap = true;
    bool _stacked = false;
    bool _immediate = false;
    bool _allowConstructionLines = true;
    bool _restoreInputPlane = false;
    bool _iLayerFollowIPlane = true;
    iIAPoint _lastReleasedPos;
    iIAPoint _startPos;
    iIAPoint _currentPos;
    iInteractorTypes _stepDefaultType = iIATypeVec3;
    std::vector<iInteractorStep> _steps;
    osg::observer_ptr<iViewer> _viewer;
    osg::ref_ptr<iTransformGroup> _iLayer;
    unsigned int _keyModifiers = 0;
    osg::ref_ptr<iInputPlane> _prevIPlane;
    unsigned int _snapBevahior = 0;
    osg::observer_ptr<iGeometricsLayer> _geometricsLayer;
    bool _needsUpdate = true;
    bool _geometryLayerLocked = false;

    static iIAPoint s_lastInputPos;
};

#endif
