#pragma once

#include "hardware/framedescriptor.h"
#include "simulator/coreservice/propertytree.h"

/// The EDID memories below "/EDID": factory ones F/F1 and on, the last attached of each output D/D1 and on, user ones
/// U/U1 and on (empty as delivered) and the emulated of each input E/E1 and on; with the methods that copy between
/// them: switch("F12:E3"), switchAll("F12") and copy("D1:U5"). @param tree borrowed by the methods.
void addEdidProperties(PropertyTree &tree, const FrameDescriptor &frame);
