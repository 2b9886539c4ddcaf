#ifndef IMODELSTAGE_VIEWING_IDRAGDROPINTERFACE_H
#define IMODELSTAGE_VIEWING_IDRAGDROPINTERFACE_H

#include <iModelStage/frame/iExport.h>
#include <iModelStage/model/NodeList.h>

class iRoot;

// The table of drops: a pair of class names (what is dragged, what it is
// dropped on) names the iDropCallback class that decides and does it.
class IMODELSTAGE_EXPORT iDragDropInterface {
public:
    static char const* const mimeType;

    iDragDropInterface() = delete;

    // False, changing nothing, when the pair has a row already.
    static bool registerCallback(char const* source, char const* target, char const* callbackClass);
    // False without a row or when the row's class cannot be made as a
    // callback.
    static bool canDrop(iRoot* targetObject, char const* source, char const* target, NodeList const& nodes);
    // As canDrop, and the drop is one undo step of the document.
    static bool drop(iRoot* targetObject, char const* source, char const* target, NodeList const& nodes);
};

#endif
