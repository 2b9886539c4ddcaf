#ifndef IMODELSTAGE_MODEL_ILOOPLOCK_H
#define IMODELSTAGE_MODEL_ILOOPLOCK_H

#include <iModelStage/frame/iExport.h>

// Switches the layer manager's loop off for its lifetime; nested locks
// unwind to the first state.
class IMODELSTAGE_EXPORT iLoopLock {
public:
    iLoopLock();
    ~iLoopLock();
    iLoopLock(iLoopLock const&) = delete;
    iLoopLock& operator=(iLoopLock const&) = delete;

private:
    bool _previous = false;
};

#endif
