#include <iModelStage/viewing/iDropCallback.h>

I_REGISTER_CLASS(iDropCallback)

iDropCallback::iDropCallback() = default;
iDropCallback::~iDropCallback() = default;

bool iDropCallback::canDrop(iRoot*, NodeList const&)
{
    return false;
}

bool iDropCallback::drop(iRoot*, NodeList const&)
{
    return false;
}
