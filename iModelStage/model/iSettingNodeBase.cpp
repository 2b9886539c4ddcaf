#include <iModelStage/model/iSettingNodeBase.h>

I_REGISTER_CLASS(iSettingNodeBase)

void iSettingNodeBase::notifyProperty(char const* property)
{
    getClass().getProperty(property, true).sigChanged();
}

void iSettingNodeBase::emitPropertySignals(char const* property)
{
    iProperty const& record = getClass().getProperty(property, true);
    record.notifyChanged(this);
    record.sigChanged();
}
