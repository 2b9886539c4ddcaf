#include <iModelStage/geometry/iSnapHelper.h>

#include <iModelStage/snapping/iBaseSnap.h>

#include <cstring>

iGeometricsLayer::iSnapHelper::~iSnapHelper()
{
    freeObjects();
}

bool iGeometricsLayer::iSnapHelper::registerClass(std::string const& className)
{
    if (!_classes.insert(className).second)
        return false;
    rebuildObjects();
    return true;
}

void iGeometricsLayer::iSnapHelper::freeObjects()
{
    std::vector<iBaseSnap*> objects;
    objects.swap(_objects);
    for (iBaseSnap* object : objects)
        delete object;
}

void iGeometricsLayer::iSnapHelper::rebuildObjects()
{
    freeObjects();
    for (std::string const& name : _classes) {
        iRoot* made = iRoot::newClass(name.c_str());
        if (iBaseSnap* snap = dynamic_cast<iBaseSnap*>(made))
            _objects.push_back(snap);
        else
            delete made;
    }
}

iBaseSnap* iGeometricsLayer::iSnapHelper::find(char const* className) const
{
    if (!className)
        return nullptr;
    for (iBaseSnap* object : _objects)
        if (std::strcmp(object->getClassName(), className) == 0)
            return object;
    return nullptr;
}
