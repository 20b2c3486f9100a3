#pragma once

#include "simulator/frontkey.h"
#include "tests/endtoend/front.h"

#include <QRandomGenerator>
#include <QSignalSpy>

#include <functional>

/// Resident memory of the program, in KiB; 0 when there is none.
double programMemory(const Device &device);

/// Waits for events instead of looking every few milliseconds. @param spy whatever brings the condition about.
bool comesTrue(QSignalSpy &spy, const std::function<bool()> &condition);

/// Where a front has the key of a port. Panel 0: nowhere. @param kind "source" or "destination".
FrontKey portKey(const PanelLayout &layout, const QString &kind, int port);

/// Whether the panel of a device at rest does its work. Empty, or the first thing that it does not.
/// The menu: Escapes lead to it from wherever the LCD is, and it follows the knob there and back.
QString menuProblem(Front &front, const QImage &menu);
/// Routes and locks that the device changes at random are what the LEDs show for each destination, and a route
/// that is keyed in is what the device has.
QString routingProblem(Front &front, QRandomGenerator &random);
