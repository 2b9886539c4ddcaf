#ifndef IMODELSTAGE_FRAME_ISTREAMHANDLER_H
#define IMODELSTAGE_FRAME_ISTREAMHANDLER_H

#include <iModelStage/frame/iExport.h>

class iInStream;
class iOutStream;

// Stream forms of property value types, by the frame's type name.
class IMODELSTAGE_EXPORT iStreamHandler {
public:
    typedef void (*ReadHandler)(iInStream&, void*);
    typedef void (*WriteHandler)(iOutStream&, void*);

    // Enters or replaces the pair for a type; true when the type was new.
    static bool registerNewIOHandlers(char const* typeName, ReadHandler read, WriteHandler write);
    // Null for a type without handlers.
    static ReadHandler getReadHandler(char const* typeName);
    static WriteHandler getWriteHandler(char const* typeName);
};

#endif
