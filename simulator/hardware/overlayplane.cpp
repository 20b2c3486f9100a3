#include "simulator/hardware/overlayplane.h"

#include <cerrno>

namespace {

/// MXCFB_SET_GBL_ALPHA of the processor's framebuffer driver; the kernel's own headers lack it.
constexpr unsigned long setGlobalAlpha = 0x40084621;

struct GlobalAlpha
{
    int32_t enable;
    int32_t alpha;
};

} // namespace

long OverlayPlane::ioctl(unsigned long request, ClientMemory argument)
{
    if (request != setGlobalAlpha)
        return -EINVAL;
    const auto *wanted = argument.target<GlobalAlpha>();
    if (!wanted)
        return -EFAULT;
    emit globalAlphaSet(wanted->enable, wanted->alpha);
    return 0;
}
