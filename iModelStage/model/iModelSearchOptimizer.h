#ifndef IMODELSTAGE_MODEL_IMODELSEARCHOPTIMIZER_H
#define IMODELSTAGE_MODEL_IMODELSEARCHOPTIMIZER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Node>

#include <unordered_map>

class iBaseModel;
class iNodeGroup;

// A lazily rebuilt index from unique id to object for one model. Adds and
// removes mark it stale; a change of id alone does not, so after
// setUniqueId the index answers for the old id until the next add or
// remove.
class IMODELSTAGE_EXPORT iModelSearchOptimizer : public iRoot {
    I_CLASS(iModelSearchOptimizer, iRoot, 1)
public:
    explicit iModelSearchOptimizer(iBaseModel* owner = nullptr);

    iNodeGroup* findObjectByUniqueId(long id);
    bool isDirty() const { return _dirty; }

private:
    void slotObjectAdded(osg::Node* node);
    void slotObjectRemoved(osg::Node* node);
    void slotAllObjectsRemoved();

    // Hashed: lookups come in no particular order and the index is never
    // walked, so a large document pays no tree descent per look-up.
    std::unordered_map<long, iNodeGroup*> _index;
    iBaseModel* _owner;
    bool _dirty = true;
};

#endif
