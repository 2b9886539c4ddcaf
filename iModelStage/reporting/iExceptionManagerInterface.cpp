#include <iModelStage/reporting/iExceptionManagerInterface.h>

I_REGISTER_CLASS(iExceptionManagerInterface)

void iExceptionManagerInterface::start(std::string const&)
{
}

void iExceptionManagerInterface::end()
{
}

void iExceptionManagerInterface::clear()
{
}

void iExceptionManagerInterface::handleBlock(iExceptionBlock*)
{
}
