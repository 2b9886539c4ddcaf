#ifndef IMODELSTAGE_FRAME_IUNITCONVERTERITEM_H
#define IMODELSTAGE_FRAME_IUNITCONVERTERITEM_H

#include <iModelStage/frame/iObjectMacros.h>

#include <string>

// Converts a value, in place, between its stored and its shown unit. The
// base converts nothing.
class IMODELSTAGE_EXPORT iUnitConverterItem : public iRoot {
    I_CLASS(iUnitConverterItem, iRoot, 1)
public:
    // Stored to shown.
    virtual bool convertTo(void* value);
    // Shown to stored.
    virtual bool convertFrom(void* value);
    virtual std::string getSymbol();
};

#endif
