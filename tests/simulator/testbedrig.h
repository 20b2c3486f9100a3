#pragma once

#include "simulator/hardware/programrunner.h"
#include "simulator/hardware/testbed.h"

#include <QSignalSpy>
#include <QStringList>

/// A bed with a helper program of these tests, and what the program has printed so far.
class TestBedRig
{
public:
    explicit TestBedRig(const HardwareFaults &faults = {}, uint32_t partNumber = 47110017);

    /// @param helper name of the executable beside the test.
    void start(const QStringList &arguments, const QString &helper = QStringLiteral("beddriver"));
    /// Type, code and value of the records it has printed.
    QStringList events() const;
    /// Generously timed, for busy machines. False: it did not come to that.
    bool waitUntilPrinted(const QString &line);
    bool waitUntilEnded(int times = 1);
    /// Starts the helper and waits until it has ended.
    /// @return whether it ended with 0.
    bool run(const QStringList &arguments);

    TestBed bed;
    ProgramRunner runner;
    QSignalSpy ended;
    QStringList printed;
};
