#pragma once

/// Whether the processor is an i.MX6, the one whose framebuffer needs disableOverlayAlpha().
/// False when the system does not say ("/sys/bus/soc/devices/soc0/soc_id").
bool isSupportedSoc();
