#include "simulator/web/recorder.h"

#include "simulator/device.h"
#include "simulator/frontkey.h"
#include "simulator/web/lcdstream.h"
#include "simulator/words.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr int shortestPause = 20; // ms; below, the script's own pace will do
constexpr int oneTurn = 250;      // ms; detents that follow sooner belong together
constexpr int mostDetents = 1000; // of one script line
constexpr auto lcdStill = 300ms;  // what wait-lcd-still waits for
constexpr int settledLed = 300;   // ms; an LED that changed later may just be blinking

/// Settings that a device keeps and that decide what the front does.
constexpr const char *kept[] = {"/MANAGEMENT/POWER.Operation", "/SYS/CECU/LCD.ControlLock", "/SYS/CECU/LCD.AutoTake",
    "/MEDIA/XP/VIDEO.DestinationConnectionStatus", "/MEDIA/XP/VIDEO.DestinationPortStatus"};

constexpr const char *recordedCommands[] = {"set", "call", "link", "upgrade", "preset", "restart"};

/// Text as a line's last argument: in quotes where it would be read as something else.
QString argument(const QString &text)
{
    const QStringList words = text.split(' ');
    const bool isLimit = words.size() > 1 && words[words.size() - 2] == "within";
    if (!isLimit && splitWords(text).error.isEmpty() && splitWords(text).list.join(' ') == text)
        return text;
    QString quoted = text;
    return '"' + quoted.replace('\\', QLatin1String("\\\\")).replace('"', QLatin1String("\\\"")) + '"';
}

} // namespace

Recorder::Recorder(Device &device, const LcdStream &lcd, QObject *parent)
    : QObject(parent)
    , m_device(device)
    , m_lcd(lcd)
{
    connect(&device.bed(), &TestBed::buttonSet, this, &Recorder::noteButton);
    connect(&device.bed(), &TestBed::keyboardKeySet, this, &Recorder::noteKeyboardKey);
    connect(&device.bed(), &TestBed::knobTurned, this, &Recorder::noteTurn);
    connect(&device.bed(), &TestBed::ledWritten, this, &Recorder::noteLed);
    connect(&device, &Device::requestReceived, this, &Recorder::noteRequest);
}

void Recorder::start()
{
    m_lines.clear();
    m_requests.clear();
    m_pressed.clear();
    m_turnLine = nowhere;
    m_isOn = true;
    for (size_t panel = 1; panel < m_leds.size(); ++panel) {
        for (size_t number = 1; number < m_leds[panel].size(); ++number) {
            Led &led = m_leds[panel][number];
            led.seen = led.recorded = m_device.bed().led(int(panel), int(number));
            led.since.start();
        }
    }
    addStart();
    m_sinceAction.start();
    emit changed();
}

/// What a device fresh from the factory has to be told to be like ours.
void Recorder::addStart()
{
    const FrameDescriptor &frame = m_device.frame();
    add(QStringLiteral(
        "# Recorded on frame %1. Where the menu stood then, a script does not know: it begins in the main "
        "menu.")
            .arg(frame.partNumber, 8, 10, QLatin1Char('0')));
    const CoreService fresh(frame);
    const qsizetype before = m_lines.size();
    for (const char *path : kept) {
        const QString value = m_device.core().property(QString::fromLatin1(path)).value_or(QString());
        if (fresh.property(QString::fromLatin1(path)) != value)
            add(QStringLiteral("set %1=%2").arg(QString::fromLatin1(path), value));
    }
    const QStringList presets = m_device.core().presetNames();
    for (const QString &preset : presets)
        add(QStringLiteral("preset add ") + argument(preset));
    if (m_lines.size() != before)
        add(QStringLiteral("wait-lcd-still"));
}

QString Recorder::stop()
{
    const auto pressed = m_pressed; // a copy: noteButton() takes from it
    for (const auto &[key, press] : pressed) {
        if (key.isButton())
            noteButton(key.panel(), key.button(), false);
        else
            noteKeyboardKey(key.code(), false);
    }
    addPause();
    addOutcome();
    m_isOn = false;
    emit changed();
    return m_lines.join('\n') + '\n';
}

QJsonObject Recorder::message() const
{
    return {{"type", "recording"}, {"on", m_isOn}, {"lines", m_isOn ? int(m_lines.size()) : 0}};
}

int Recorder::elapsed(const QElapsedTimer &since) { return int(std::clamp<qint64>(since.elapsed(), 1, 600000)); }

/// The last line is the press of this key.
void Recorder::notePress(PageKey key)
{
    Press press{m_lines.size() - 1, {}};
    press.since.start();
    m_pressed.insert_or_assign(key, press);
}

void Recorder::add(const QString &line)
{
    m_lines.append(line);
    emit changed();
}

void Recorder::addAction(const QString &line)
{
    addPause();
    addOutcome();
    add(line);
    m_turnLine = nowhere;
    m_sinceAction.start();
}

void Recorder::addPause()
{
    const int pause = elapsed(m_sinceAction);
    const int still = int(lcdStill.count());
    // Where the person saw the LCD at rest, so does the script, on a slower machine too.
    const bool sawRest = pause >= still + shortestPause && m_lcd.stillTime() >= lcdStill;
    const int wait = sawRest ? pause - still : pause;
    if (wait >= shortestPause)
        add(QStringLiteral("wait %1").arg(wait));
    if (sawRest)
        add(QStringLiteral("wait-lcd-still %1").arg(still));
}

void Recorder::addOutcome()
{
    for (const QString &request : std::as_const(m_requests))
        add(QStringLiteral("expect request ") + argument(request));
    m_requests.clear();
    for (size_t panel = 1; panel < m_leds.size(); ++panel) {
        for (size_t number = 1; number < m_leds[panel].size(); ++number) {
            Led &led = m_leds[panel][number];
            if (led.seen == led.recorded || !led.since.hasExpired(settledLed))
                continue;
            led.recorded = led.seen;
            const FrontKey key{int(panel), int(number)};
            add(QStringLiteral("expect led %1 %2").arg(keyName(m_device.layout(), key)).arg(led.seen));
        }
    }
}

void Recorder::noteButton(int panel, int button, bool pressed)
{
    if (!m_isOn)
        return;
    const QString name = keyName(m_device.layout(), {panel, button});
    const PageKey key = PageKey::ofButton(panel, button);
    if (pressed) {
        addAction(QStringLiteral("press ") + name);
        notePress(key);
        return;
    }
    const auto down = m_pressed.find(key);
    if (down == m_pressed.end())
        return; // it went down before
    if (isLast(down->second.line)) {
        m_lines.last() = QStringLiteral("tap %1 %2").arg(name).arg(elapsed(down->second.since));
        m_sinceAction.start();
    } else {
        addAction(QStringLiteral("release ") + name);
    }
    m_pressed.erase(down);
}

/// A script knows the knob and Escape as pushes of some length only: what happens meanwhile comes behind them.
void Recorder::noteKeyboardKey(int code, bool pressed)
{
    const std::optional<PageKey> key = PageKey::ofKeyboard(code);
    if (!m_isOn || !key)
        return;
    if (pressed) {
        addAction(key->name());
        notePress(*key);
        return;
    }
    const auto down = m_pressed.find(*key);
    if (down == m_pressed.end())
        return;
    m_lines[down->second.line] = QStringLiteral("%1 %2").arg(key->name()).arg(elapsed(down->second.since));
    if (isLast(down->second.line))
        m_sinceAction.start();
    m_pressed.erase(down);
}

void Recorder::noteTurn(int detents, std::chrono::milliseconds spacing)
{
    if (!m_isOn)
        return;
    const bool goesOn = isLast(m_turnLine) && spacing == m_spacing && (detents > 0) == (m_turned > 0)
        && elapsed(m_sinceAction) < oneTurn && std::abs(m_turned + detents) <= mostDetents;
    if (!goesOn)
        addAction({});
    m_turned = goesOn ? m_turned + detents : detents;
    m_spacing = spacing;
    m_turnLine = m_lines.size() - 1;
    m_lines.last() = QStringLiteral("turn %1%2").arg(m_turned).arg(spacing == TestBed::fastDetent ? " fast" : "");
    m_sinceAction.start();
}

void Recorder::noteCommand(const QString &line)
{
    const QString name = splitWords(line).list.value(0);
    if (m_isOn && std::ranges::find(recordedCommands, name) != std::end(recordedCommands))
        addAction(line.trimmed());
}

void Recorder::noteRequest(const QString &request)
{
    if (m_isOn && (request.startsWith("SET ") || request.startsWith("CALL ")))
        m_requests.append(request);
}

void Recorder::noteLed(int panel, int number, int value)
{
    if (!m_isOn || number < 1 || number > 40)
        return;
    Led &led = m_leds[size_t(panel)][size_t(number)];
    if (std::exchange(led.seen, value) != value)
        led.since.start();
}
