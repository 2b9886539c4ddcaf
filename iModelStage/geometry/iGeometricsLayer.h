#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRICSLAYER_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRICSLAYER_H

#include <iModelStage/frame/iValueTypes.h>
#include <iModelStage/model/iNodeLayer.h>

#include <osg/MatrixTransform>
#include <osg/observer_ptr>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class iBaseSnap;
class iGeometricGroup;
class iGeometricGroupCallback;

// The layer of a document's geometric objects. On top of a plain layer it
// owns the scene subtree that viewers show (input planes, objects, the
// tools' temporary drawing, an editing layer made on demand), the deferred
// geometry update that rebuilds each changed group once per frame, the
// queue of finalize callbacks, the per-frame look of selected and filtered
// objects, and the process-wide registries of snap classes and geometry
// callbacks.
class IMODELSTAGE_EXPORT iGeometricsLayer : public iNodeLayer {
    I_CLASS(iGeometricsLayer, iNodeLayer, 1)
    I_OSG_OBJECT(iGeometricsLayer)
public:
    class iSnapHelper;

    iGeometricsLayer();
    // A fresh layer with its own subtree; contents are not copied.
    iGeometricsLayer(iGeometricsLayer const& other, osg::CopyOp const& copyop = osg::CopyOp::SHALLOW_COPY);

    sigslot::signal0<> sigFinalizeBegin;
    sigslot::signal0<> sigFinalizeEnd;
    sigslot::signal1<iGeometricGroup*> sigGroupFinalizeBegin;
    sigslot::signal1<iGeometricGroup*> sigGroupFinalizeEnd;
    static sigslot::signal0<> sigSnapFilterChanged;

    // Nothing of this level is stored.
    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    void addChildObject(osg::Group* parent, osg::Node* node, bool recursive) override;
    void removeObject(osg::Node* node, bool recursive) override;
    void removeAllObjects() override;
    // The layer's own root, above the object root.
    osg::Group* getRoot() override;
    // Rebuilds the groups queued since the last frame.
    void beginFrame() override;
    void processPendingCallBacks() override;

    osg::Group* getIPlanes() { return _iPlanes.get(); }
    osg::Group* getInteractiveLayer() { return _interactiveLayer.get(); }
    iGeometricsLayer* getEditingLayer();

    // Runs the finalize callbacks queued so far, without waiting for the loop.
    void finalizeAll() { processPendingCallBacks(); }
    // Queues every geometric group of the layer for the next frame.
    void forceGeometricUpdate();
    // While locked, changed groups are not queued and their change is lost.
    // Returns the previous state.
    bool lockUnLockGeometricUpdate(bool lock);

    void showAll();
    void hideAll();
    void showSelected();
    void hideSelected();
    // Hides every object that is not selected, then shows the ancestors of
    // the selected ones again.
    void hideUnSelected(osg::Node* except);
    // True when the node passes the model's selection filter.
    bool isObjectFiltered(osg::Node* node);

    // Runs the callback class when a group of className finalizes with id.
    static void registerGeometryCallback(char const* className, char const* callbackClass, char const* id);

    // Snap classes: one instance each, in class-name order. A new name
    // makes every instance anew, so no caller may keep an instance across
    // a registration.
    static bool registerSnapClass(char const* className);
    static iBaseSnap* getSnapObject(char const* className);
    static std::vector<iBaseSnap*> const& getSnapObjectsList();
    static std::set<std::string> const& getSnapFilter();
    static void setSnapFilter(std::set<std::string> const& classes);
    static bool getSnapFilterActive();
    static void setSnapFilterActive(bool on);

protected:
    ~iGeometricsLayer() override;

    void addToGeometricCacheUpdate(iGeometricGroup* group);
    void removeFromGeometricCacheUpdate(iGeometricGroup* group);
    void clearGeometricUpdateCache();
    void processPendingGeometricUpdates();

    static void freeSnapObjects();
    static void rebuildSnapObjects();

    void slotGeometryGroupChanged(iGeometricGroup* group);
    void slotGeometryGroupFinalized(iGeometricGroup* group, std::string const& id);
    void slotGeometryMaterialChanged(iRoot* source, iMaterialGroupObserver material);
    void slotGeometryUseColorChanged(iRoot* source, iBoolSwitch on);
    void slotGeometryUseMaterialChanged(iRoot* source, iBoolSwitch on);

    // Hooks on the model's selection and flag signals; they do nothing.
    void slotObjectSelectionAdded(osg::Node*) {}
    void slotObjectSelectionRemoved(osg::Node*) {}
    void slotObjectSelectionCleared() {}
    void slotNodeFlagChanged(osg::Node*, unsigned int, bool) {}
    void slotNodeFlagsChanged(osg::Node*, std::bitset<32>, std::bitset<32>) {}
    void slotSelectionFilterChanged() {}

private:
    struct pendingCallback {
        std::unique_ptr<iGeometricGroupCallback> callback;
        osg::observer_ptr<iGeometricGroup> group;
        std::string id;
    };
    // The id is kept for the record; the observer guards against a group
    // that left the tree without removeObject and died.
    struct cachedGroup {
        long uid;
        osg::observer_ptr<iGeometricGroup> group;
    };

    static std::multimap<std::string, std::string>& gcallbackmap();
    static iSnapHelper& snapHelper();

    void buildSubtree();
    bool isInObjectRoot(osg::Node* node);
    bool isQueued(iGeometricGroup* group, std::string const& callbackClass, std::string const& id) const;
    void showAncestors(osg::Node* node, int depth);
    // Runs work on each queued record whose group is still in the layer.
    void forEachFinalizing(void (*work)(iGeometricsLayer*, iGeometricGroupCallback*, iGeometricGroup*));

    osg::ref_ptr<osg::MatrixTransform> _layerRoot;
    osg::ref_ptr<osg::Group> _iPlanes;
    osg::ref_ptr<osg::Group> _interactiveLayer;
    osg::ref_ptr<iGeometricsLayer> _editingLayer;
    bool _geometricUpdateLocked = false;
    std::vector<pendingCallback> _pendingCallbacks;
    bool _processingCallbacks = false;
    std::map<iGeometricGroup*, cachedGroup> _geometricUpdateCache;
};

#endif
