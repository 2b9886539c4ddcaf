#ifndef IMODELSTAGE_GEOMETRY_IGEOMETRYRENDERERMANAGER_H
#define IMODELSTAGE_GEOMETRY_IGEOMETRYRENDERERMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/geometry/iEntityGroup.h>

#include <list>
#include <string>
#include <vector>

class iGeometricGroup;

// The registry from document class names to renderer class names. Look-ups
// take the exact class name: a subclass of a registered class has no
// renderer until it is registered by its own name.
class IMODELSTAGE_EXPORT iGeometryRendererManager : public iRoot {
    I_CLASS(iGeometryRendererManager, iRoot, 1)
public:
    // The first instance made becomes the one getInstance returns.
    iGeometryRendererManager();
    ~iGeometryRendererManager() override;
    iGeometryRendererManager(iGeometryRendererManager const&) = delete;
    iGeometryRendererManager& operator=(iGeometryRendererManager const&) = delete;

    static iGeometryRendererManager* getInstance();

    // False when the pair is already there or either class is unknown. The
    // int is accepted for hosts that pass one: a renderer orders itself by
    // its own priority.
    static bool registerGeometricRenderer(char const* className, char const* rendererClassName, int);
    static bool hasAttachedRenderer(char const* className);
    // Whether some visible viewer shows a mask sharing a bit with mask.
    static bool canRender(int mask);
    // Asks every renderer of the group that is, or derives from,
    // rendererClassName; true when out holds anything afterwards.
    static bool getGeometricEntities(iGeometricGroup* group, char const* rendererClassName,
                                     std::vector<iEntityGroup>& out);

    void slotForceGeometricLayerUpdate();

protected:
    friend class iGeometricGroup;

    // The renderer classes of className that the class table still knows,
    // newest registration first.
    static bool getRenderClasses(char const* className, std::list<std::string>& out);
};

#endif
