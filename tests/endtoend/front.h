#pragma once

#include "simulator/device.h"

#include <QStringList>

/// The real program in front of one frame, as its operator meets it.
class Front : public QObject
{
    Q_OBJECT
public:
    /// Without a core service until the device is powered on. @param row of the frame table, from 1.
    explicit Front(int row, const HardwareFaults &faults = {});
    /// A program that does not end well ends the test.
    ~Front() override;

    /// Device and program are up, and the program has asked for everything it needs.
    bool start();

    Device &device() { return m_device; }
    void tap(int panel, int button);
    void hold(int panel, int button, bool down) { m_device.bed().setButton(panel, button, down); }
    /// @param code as TestBed::setKeyboardKey() takes it.
    void tapKey(int code);
    void turn(int detents) { m_device.bed().turnKnob(detents, TestBed::slowDetent); }
    /// The operator waits.
    static void pass(int milliseconds);
    int led(int panel, int number) const { return m_device.bed().led(panel, number); }
    /// "panel.led=value" each, the dark ones left out.
    QString litLeds() const;
    /// LED records since the last takeLeds(), "panel.led=value" each, in the order they were written.
    const QStringList &leds() const { return m_leds; }
    void takeLeds() { m_leds.clear(); }
    /// The LCD, once it has not changed for a moment.
    QImage picture() const;
    /// Requests since the last takeRequests(), without their signatures.
    const QStringList &requests() const { return m_requests; }
    void takeRequests() { m_requests.clear(); }
    const QStringList &messages() const { return m_messages; }

private:
    Device m_device;
    QStringList m_leds, m_requests, m_messages;
};
