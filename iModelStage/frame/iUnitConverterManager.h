#ifndef IMODELSTAGE_FRAME_IUNITCONVERTERMANAGER_H
#define IMODELSTAGE_FRAME_IUNITCONVERTERMANAGER_H

#include <iModelStage/frame/iObjectMacros.h>

#include <string>

// The registry of converters by class name. Every conversion creates one
// converter through the class table, uses it and destroys it.
class IMODELSTAGE_EXPORT iUnitConverterManager : public iRoot {
    I_CLASS(iUnitConverterManager, iRoot, 1)
public:
    // False when the name is registered already.
    static bool registerConverterItem(char const* className);
    // False, leaving the value alone, for a name that is not registered or
    // whose class cannot be created.
    static bool convertTo(char const* className, void* value);
    static bool convertFrom(char const* className, void* value);
    static std::string getSymbol(char const* className);
};

#endif
