#pragma once

#include "simulator/device.h"
#include "simulator/web/benchstate.h"
#include "simulator/web/commandrunner.h"
#include "simulator/web/heldkeys.h"
#include "simulator/web/lcdstream.h"
#include "simulator/web/ledstate.h"
#include "simulator/web/logfeed.h"
#include "simulator/web/pagemessage.h"
#include "simulator/web/recorder.h"

class FrontPage;

/// One device as pages see it, from the first page to the device's end: tells all of them the same, and does what
/// they ask for. Keys that a page holds come up when it goes.
class DeviceView : public QObject
{
    Q_OBJECT
public:
    /// @param device borrowed; outlives the view. @param firstLogNumber number of the first line of the log.
    DeviceView(Device &device, qint64 firstLogNumber, QObject *parent = nullptr);
    ~DeviceView() override;

    /// Tells a page all there is to know and keeps it up to date from then on.
    /// @param page borrowed until it is removed.
    void add(FrontPage *page);
    void remove(FrontPage *page);
    /// @param message any but one for another frame.
    void handle(FrontPage *page, const PageMessage &message);

    /// Executes what comes over HTTP.
    CommandRunner &commands() { return m_commands; }
    QImage lcd() const { return m_device.bed().lcd(); }
    qint64 nextLogNumber() const { return m_log.nextNumber(); }
    bool isRecording() const { return m_recorder.isOn(); }

signals:
    void quitRequested();

private:
    void tellAll(const QJsonObject &message);
    QJsonObject programMessage() const;
    void prepare(CommandRunner &runner);
    void execute(FrontPage *page, const PageMessage &message);
    void startRecording(FrontPage *page, const QJsonValue &id);
    void stopRecording(FrontPage *page, const QJsonValue &id);

    Device &m_device;
    HeldKeys m_held;
    LedState m_leds;
    LcdStream m_lcd;
    BenchState m_bench;
    LogFeed m_log;
    Recorder m_recorder;
    std::map<FrontPage *, std::unique_ptr<CommandRunner>> m_pages;
    CommandRunner m_commands;
};
