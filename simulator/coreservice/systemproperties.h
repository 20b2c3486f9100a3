#pragma once

#include "hardware/framedescriptor.h"
#include "simulator/coreservice/propertytree.h"

/// What the frame as a whole has: identity and versions, network, serial line, front panel, buzzer, power supplies,
/// with the methods that go with them. @param tree borrowed by the methods.
void addSystemProperties(PropertyTree &tree, const FrameDescriptor &frame);
