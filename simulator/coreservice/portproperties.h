#pragma once

#include "hardware/framedescriptor.h"
#include "simulator/coreservice/propertytree.h"

/// The ports below "/MEDIA/PORTS/VIDEO": I1, I2, ... and O1, O2, ..., each with its type, version, status, settings
/// and audio. PortType is "HDMI" or "DP", with "_AUDIO" where the port has analog audio, or "AUDIO" alone.
/// @param tree borrowed by the ports' methods.
void addPortProperties(PropertyTree &tree, const FrameDescriptor &frame);
