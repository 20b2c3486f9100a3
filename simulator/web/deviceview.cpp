#include "simulator/web/deviceview.h"

#include "simulator/web/devicemessage.h"
#include "simulator/web/frontpage.h"

namespace {

QJsonObject resultMessage(const QJsonValue &id, bool ok, const QString &text)
{
    return {{"type", "result"}, {"id", id}, {"ok", ok}, {"text", text}};
}

} // namespace

DeviceView::DeviceView(Device &device, qint64 firstLogNumber, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_held(device.bed())
    , m_leds(device.bed(), panelCount(device.layout()))
    , m_lcd(device.bed())
    , m_bench(device)
    , m_log(device, firstLogNumber)
    , m_recorder(device, m_lcd)
    , m_commands(device)
{
    connect(&m_held, &HeldKeys::changed, this, [this] { tellAll(m_held.message()); });
    connect(&m_leds, &LedState::changed, this, [this](int panel, int number, int value) {
        tellAll({{"type", "led"}, {"key", PageKey::ofButton(panel, number).name()}, {"value", value}});
    });
    connect(&m_bench, &BenchState::changed, this, [this] { tellAll(m_bench.message()); });
    connect(&m_log, &LogFeed::told, this, &DeviceView::tellAll);
    connect(&m_recorder, &Recorder::changed, this, [this] { tellAll(m_recorder.message()); });
    connect(&device, &Device::programStarted, this, [this] { tellAll(programMessage()); });
    connect(&device, &Device::programEnded, this, [this] { tellAll(programMessage()); });
    prepare(m_commands);
}

DeviceView::~DeviceView()
{
    // Commands that end with it let go of keys, and that is told to the pages: to none any more.
    const auto runners = std::exchange(m_pages, {});
}

void DeviceView::prepare(CommandRunner &runner)
{
    connect(&runner, &CommandRunner::lineBegun, &m_recorder, &Recorder::noteCommand);
    connect(&runner, &CommandRunner::quitRequested, this, &DeviceView::quitRequested);
}

void DeviceView::add(FrontPage *page)
{
    m_log.flush(); // these lines are in the message that the page gets
    for (const QJsonObject &message : {deviceMessage(m_device), m_leds.message(), m_held.message(), programMessage(),
             m_bench.message(), m_log.message(), m_recorder.message()})
        page->send(message);
    auto runner = std::make_unique<CommandRunner>(m_device);
    prepare(*runner);
    m_pages.emplace(page, std::move(runner));
    m_lcd.add(page);
}

void DeviceView::remove(FrontPage *page)
{
    const auto runner = m_pages.extract(page); // ends behind the rest: a key that it holds comes up then
    m_lcd.remove(page);
    m_held.releaseAll(page);
}

void DeviceView::tellAll(const QJsonObject &message)
{
    for (const auto &[page, runner] : m_pages)
        page->send(message);
}

QJsonObject DeviceView::programMessage() const
{
    QJsonObject message{{"type", "program"}, {"state", "running"}};
    if (!m_device.hasProgram())
        message["state"] = "none";
    if (const std::optional<ProgramEnd> &end = m_device.programEnd()) {
        message["state"] = "ended";
        message["text"] = end->text;
    }
    return message;
}

void DeviceView::handle(FrontPage *page, const PageMessage &message)
{
    using Type = PageMessage::Type;
    switch (message.type) {
    case Type::Press: m_held.press(page, *message.key); break;
    case Type::Release: m_held.release(page, *message.key); break;
    case Type::ReleaseAll: m_held.releaseAll(page); break;
    case Type::Turn:
        m_device.bed().turnKnob(message.detents, message.fast ? TestBed::fastDetent : TestBed::slowDetent);
        break;
    case Type::Command: execute(page, message); break;
    case Type::StartRecording: startRecording(page, message.id); break;
    case Type::StopRecording: stopRecording(page, message.id); break;
    case Type::Frame: break; // not ours to do
    }
}

void DeviceView::execute(FrontPage *page, const PageMessage &message)
{
    const auto answer = [page, id = message.id](const QList<LineResult> &results) {
        const CommandResult &result = results.last().result;
        page->send(resultMessage(id, result.ok(), result.text));
    };
    if (!m_pages.at(page)->add({message.line}, page, answer))
        page->send(resultMessage(message.id, false, QStringLiteral("too many commands wait already")));
}

void DeviceView::startRecording(FrontPage *page, const QJsonValue &id)
{
    if (m_recorder.isOn())
        page->send(resultMessage(id, false, QStringLiteral("a recording is running already")));
    else
        m_recorder.start();
}

void DeviceView::stopRecording(FrontPage *page, const QJsonValue &id)
{
    if (m_recorder.isOn())
        page->send(resultMessage(id, true, m_recorder.stop()));
    else
        page->send(resultMessage(id, false, QStringLiteral("no recording is running")));
}
