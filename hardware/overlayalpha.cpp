#include "hardware/overlayalpha.h"

#include "hardware/devicefile.h"

#include <QtGlobal>

#include <cstdint>

namespace {

/// The argument of MXCFB_SET_GBL_ALPHA, a request of the i.MX framebuffer driver that the kernel's
/// own headers do not have.
struct GlobalAlpha
{
    int32_t enable;
    int32_t alpha;
};
constexpr unsigned long setGlobalAlpha = 0x40084621;

} // namespace

void disableOverlayAlpha()
{
    DeviceFile framebuffer;
    if (framebuffer.open("/dev/fb1") < 0) {
        qWarning("Failed to open framebuffer");
        return;
    }
    const GlobalAlpha off{0, 0};
    if (framebuffer.ioctl(setGlobalAlpha, static_cast<const void *>(&off)) < 0)
        qWarning("Failed to set framebuffer alpha");
}
