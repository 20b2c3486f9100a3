#pragma once

#include <QJsonObject>

class Device;
struct PanelLayout;

/// How many button panels a front has: 1 to 3.
int panelCount(const PanelLayout &layout);

/// The "device" message: which frame this is, what its keys are, and which frames there are.
QJsonObject deviceMessage(const Device &device);
