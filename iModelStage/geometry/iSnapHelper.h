#ifndef IMODELSTAGE_GEOMETRY_ISNAPHELPER_H
#define IMODELSTAGE_GEOMETRY_ISNAPHELPER_H

#include <iModelStage/geometry/iGeometricsLayer.h>

#include <set>
#include <string>
#include <vector>

// The registry of snap classes: their names in name order, one instance of
// each in the same order, and the snap filter. The instances belong to the
// registry and die with it.
class IMODELSTAGE_EXPORT iGeometricsLayer::iSnapHelper {
public:
    iSnapHelper() = default;
    ~iSnapHelper();
    iSnapHelper(iSnapHelper const&) = delete;
    iSnapHelper& operator=(iSnapHelper const&) = delete;

    // False for a name already registered; otherwise every instance is
    // made anew.
    bool registerClass(std::string const& className);
    void freeObjects();
    // Frees the instances, then makes one per registered name; names the
    // frame cannot make into a snap are passed over.
    void rebuildObjects();
    iBaseSnap* find(char const* className) const;

    std::set<std::string> const& classes() const { return _classes; }
    std::vector<iBaseSnap*> const& objects() const { return _objects; }

    std::set<std::string> filter;
    bool filterActive = false;

private:
    std::set<std::string> _classes;
    std::vector<iBaseSnap*> _objects;
};

#endif
