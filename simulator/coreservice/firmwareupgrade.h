#pragma once

#include "simulator/coreservice/propertytree.h"

#include <QElapsedTimer>
#include <QTimer>

#include <chrono>

/// A firmware upgrade as "/MANAGEMENT/BOOTLOADER" tells of it: Status "UPDATING" and Progress "0 Writing firmware"
/// to "100 Writing firmware", else Status "READY" and Progress "0 Idle".
class FirmwareUpgrade : public QObject
{
    Q_OBJECT
public:
    /// @param tree borrowed, outlives the upgrade.
    explicit FirmwareUpgrade(PropertyTree &tree, QObject *parent = nullptr);

    /// One that is running starts anew.
    void start(std::chrono::milliseconds duration);

private:
    void step();

    PropertyTree &m_tree;
    std::chrono::milliseconds m_duration{};
    QElapsedTimer m_since;
    QTimer m_step;
};
