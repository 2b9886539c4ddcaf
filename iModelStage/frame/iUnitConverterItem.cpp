#include <iModelStage/frame/iUnitConverterItem.h>

I_REGISTER_CLASS(iUnitConverterItem)

bool iUnitConverterItem::convertTo(void*)
{
    return false;
}

bool iUnitConverterItem::convertFrom(void*)
{
    return false;
}

std::string iUnitConverterItem::getSymbol()
{
    return std::string();
}
