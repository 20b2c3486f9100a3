#pragma once

#include "hardware/framedescriptor.h"
#include "simulator/coreservice/propertytree.h"

/// Supply voltages and temperatures: "/SYS/CECU/HEALTH" of the control unit, "/SYS/HSMB/HEALTH" of the motherboard and
/// "/SYS/IB1/PORT1/HEALTH", "/SYS/OB2/PORT4/HEALTH", ... of the four ports of each board.
/// A value is "reading unit;normal low;normal high;error low;error high;lowest seen;highest seen", as in
/// "5.02 V;4.75;5.25;4.50;5.50;4.97;5.07" and "41.0 C;5.0;60.0;0.0;70.0;36.0;46.0".
void addHealthProperties(PropertyTree &tree, const FrameDescriptor &frame);
