#ifndef IMODELSTAGE_EDITING_IGEOMETRYHANDLERMANAGER_H
#define IMODELSTAGE_EDITING_IGEOMETRYHANDLERMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <map>
#include <string>
#include <vector>

// The registry of handlers by object class. A class gets only the handlers
// registered under its own name: a subclass does not inherit its parent's.
class IMODELSTAGE_EXPORT iGeometryHandlerManager : public iRoot {
    I_CLASS(iGeometryHandlerManager, iRoot, 1)
public:
    iGeometryHandlerManager();
    ~iGeometryHandlerManager() override;
    iGeometryHandlerManager(iGeometryHandlerManager const&) = delete;
    iGeometryHandlerManager& operator=(iGeometryHandlerManager const&) = delete;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    // Created on first use.
    static iGeometryHandlerManager* getInstance();

    // Both classes must be known; the handler joins the class's list, in
    // order of registration.
    static bool registerGeometricHandler(char const* geometricClass, char const* handlerClass);
    // The handlers of exactly that class that still exist; false when there
    // are none.
    static bool getHandlerClasses(char const* className, std::vector<std::string>& out);

private:
    static std::map<std::string, std::vector<std::string>>& registry();
    static iGeometryHandlerManager* s_instance;
};

#endif
