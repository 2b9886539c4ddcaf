#include "shapes/wbRegistry.h"

void wbRegisterClasses()
{
}
