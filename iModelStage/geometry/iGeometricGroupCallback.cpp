#include <iModelStage/geometry/iGeometricGroupCallback.h>

#include <iModelStage/geometry/iGeometricGroup.h>

I_REGISTER_CLASS(iGeometricGroupCallback)

namespace {

// Sets a signal's blocked state and restores the previous one on leaving,
// also when the callback throws.
class BlockedAs {
public:
    BlockedAs(sigslot::signal2<iGeometricGroup*, std::string const&>* signal, bool block)
        : m_signal(signal), m_previous(signal ? signal->block(block) : false)
    {
    }
    ~BlockedAs()
    {
        if (m_signal)
            m_signal->block(m_previous);
    }
    BlockedAs(BlockedAs const&) = delete;
    BlockedAs& operator=(BlockedAs const&) = delete;

private:
    sigslot::signal2<iGeometricGroup*, std::string const&>* m_signal;
    bool m_previous;
};

} // namespace

void iGeometricGroupCallback::finalize(iGeometricsLayer* layer, iGeometricGroup* group, bool block)
{
    BlockedAs scope(group ? &group->sigGeometryGroupFinalized : nullptr, block);
    finalizeImplementation(layer, group);
}
