#include <iModelStage/model/iLoadScope.h>

namespace {

// Loads run on the document's thread; another thread's load is another
// load.
thread_local iLoadScope* outermost = nullptr;

} // namespace

iLoadScope::iLoadScope() : m_outermost(outermost == nullptr)
{
    if (m_outermost)
        outermost = this;
}

iLoadScope::~iLoadScope()
{
    if (m_outermost)
        outermost = nullptr;
}

iLoadScope::Layer& iLoadScope::layer(iBaseModel const* model)
{
    return outermost->m_layers[model];
}
