#ifndef IMODELSTAGE_MODEL_INODEFINDER_H
#define IMODELSTAGE_MODEL_INODEFINDER_H

#include <iModelStage/frame/iExport.h>

#include <osg/observer_ptr>

class iNodeGroup;

// A weak handle to an object: it reads as null once the object is gone.
class IMODELSTAGE_EXPORT iNodeFinder {
public:
    iNodeFinder() = default;
    explicit iNodeFinder(iNodeGroup* object);

    iNodeGroup* get() const;
    bool valid() const { return get() != nullptr; }

    // Looks the id up in the whole document, not just around the object.
    iNodeGroup* findObjectByUniqueId(long id) const;

private:
    osg::observer_ptr<iNodeGroup> _object;
};

#endif
