#pragma once

#include <QObject>
#include <QTimer>

#include <array>

class Device;
class Printer;

/// Prints what happens on a device as it happens: the program's messages, its requests that change something, LEDs.
class EventReporter : public QObject
{
    Q_OBJECT
public:
    /// @param device, printer borrowed; outlive the reporter.
    EventReporter(Device &device, Printer &printer, QObject *parent = nullptr);

    /// Prints LED changes that it holds back until they are complete.
    void flush();

private:
    void reportRequest(const QString &request);
    void noteLed();

    Device &m_device;
    Printer &m_printer;
    std::array<std::array<int, 41>, 4> m_shown{}; // last printed LED values by panel and number, both from 1
    QTimer m_settled;
};
