#ifndef IMODELSTAGE_VIEWING_IDROPCALLBACK_H
#define IMODELSTAGE_VIEWING_IDROPCALLBACK_H

#include <iModelStage/frame/iObjectMacros.h>
#include <iModelStage/model/NodeList.h>

// What a drop of some objects onto some target means. A host derives one,
// registers it by name and enters it in iDragDropInterface; an instance is
// made for one question and deleted after it.
class IMODELSTAGE_EXPORT iDropCallback : public iRoot {
    I_CLASS(iDropCallback, iRoot, 1)
public:
    iDropCallback();
    ~iDropCallback() override;

    void read(iInStream&, int) {}
    void write(iOutStream&) {}

    virtual bool canDrop(iRoot* target, NodeList const& nodes);
    virtual bool drop(iRoot* target, NodeList const& nodes);
};

#endif
