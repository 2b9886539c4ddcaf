#ifndef IMODELSTAGE_MODEL_IMODELSEARCHOPTIMIZER_H
#define IMODELSTAGE_MODEL_IMODELSEARCHOPTIMIZER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <osg/Node>

#include <map>

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

    std::map<long, iNodeGroup*> _index;
    iBaseModel* _owner;
    bool _dirty = true;
};

#endif
