#pragma once

/// Switches off the global alpha of the i.MX6's overlay framebuffer ("/dev/fb1"), so that the LCD shows it
/// unblended. A failure is logged as a warning. For the processors of isSupportedSoc() only: the request
/// means something else to other drivers.
void disableOverlayAlpha();
