#ifndef IMODELSTAGE_FRAME_ISLOT_H
#define IMODELSTAGE_FRAME_ISLOT_H

#include <iModelStage/frame/sigslot.h>

// Base of every receiver of signals.
class iSlot : public sigslot::has_slots<sigslot::multi_threaded_local> {
public:
    iSlot() = default;
    iSlot(iSlot const&) = default;
    iSlot(iSlot&&) = default;
    iSlot& operator=(iSlot const&) = default;
    iSlot& operator=(iSlot&&) = default;
    ~iSlot() override = default;
};

#endif
