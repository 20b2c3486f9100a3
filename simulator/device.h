#pragma once

#include "hardware/panellayout.h"
#include "simulator/coreservice/coreservice.h"
#include "simulator/hardware/programrunner.h"
#include "simulator/hardware/testbed.h"
#include "simulator/linelog.h"

#include <QTimer>

#include <optional>

/// How the program ended without being asked to.
struct ProgramEnd
{
    enum class How { Exited, Crashed, NotStarted };
    How how = How::Exited;
    int exitCode = 0;
    QString text; ///< What happened and what to do about it, possibly several lines.
};

/// A whole frame: the core service, the hardware, and the front-panel program that lives between them.
class Device : public QObject
{
    Q_OBJECT
public:
    static constexpr quint16 servicePort = 6107; ///< Where the program looks for the core service.

    struct Setup
    {
        const FrameDescriptor *frame = nullptr; ///< Borrowed; a row of the frame table.
        HardwareFaults faults;
        QString program;     ///< Path of the executable; empty for a device without one.
        QStringList wrapper; ///< Put in front of the program; see ProgramRunner::start().
        quint16 port = servicePort;
    };

    explicit Device(const Setup &setup, QObject *parent = nullptr);

    /// Takes the core service's port. Empty when the device stands, else what is in the way and what to do about it.
    QString powerOn();

    const FrameDescriptor &frame() const { return *m_setup.frame; }
    const PanelLayout &layout() const { return panelLayout(m_setup.frame->layoutId()); }
    CoreService &core() { return m_core; }
    TestBed &bed() { return m_bed; }
    const TestBed &bed() const { return m_bed; }

    bool hasProgram() const { return !m_setup.program.isEmpty(); }
    void startProgram();
    /// Returns when it is gone. @return whether it ended well.
    bool stopProgram() { return m_runner.stop(); }
    /// It waits for something, at this moment.
    bool isProgramIdle() const { return m_runner.isIdle(); }
    qint64 programProcessId() const { return m_runner.processId(); }
    /// It has connected and sent its first requests, and has had none to send for a moment.
    bool isProgramReady() const;
    /// Nothing while the program runs, and before its first start.
    const std::optional<ProgramEnd> &programEnd() const { return m_end; }

    /// The core service's requests, without their signatures.
    const LineLog &requests() const { return m_requests; }
    /// The program's messages.
    const LineLog &messages() const { return m_messages; }

signals:
    /// The core service got this request, shown without its signature.
    void requestReceived(const QString &request);
    void messageLogged(const QString &line);
    void programStarted();
    void programEnded(const ProgramEnd &end);

private:
    void logRequest(const QString &line);
    void logMessage(const QString &line);
    void expectRequests();
    void noteStartFailure(const QString &reason);
    void noteEnd(int exitCode, bool crashed);

    Setup m_setup;
    LineLog m_requests;
    LineLog m_messages;
    std::optional<ProgramEnd> m_end;
    QTimer m_quietRound; // runs from a request until m_quietRounds is full
    int m_quietRounds = 0;
    CoreService m_core;
    TestBed m_bed;
    ProgramRunner m_runner; // last: the program goes before what it lives in
};
