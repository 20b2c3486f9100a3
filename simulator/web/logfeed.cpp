#include "simulator/web/logfeed.h"

#include "simulator/device.h"

using namespace std::chrono_literals;

namespace {

constexpr auto gatherTime = 50ms;

QJsonObject logMessage(const QJsonArray &lines) { return {{"type", "log"}, {"lines", lines}}; }

} // namespace

LogFeed::LogFeed(Device &device, qint64 firstNumber, QObject *parent)
    : QObject(parent)
    , m_next(firstNumber)
{
    m_gathering.setSingleShot(true);
    m_gathering.setInterval(gatherTime);
    connect(&m_gathering, &QTimer::timeout, this, &LogFeed::flush);
    connect(&device, &Device::requestReceived, this, [this](const QString &text) { append("request", text); });
    connect(&device, &Device::messageLogged, this, [this](const QString &text) { append("message", text); });
    connect(&device.core(), &CoreService::lineSent, this, &LogFeed::appendAnswer);
}

void LogFeed::appendAnswer(const QString &line)
{
    // Requests are shown without their signatures, so answers come without the block that repeats them.
    if (!line.startsWith('{') && line != "}")
        append("answer", line);
}

void LogFeed::append(const char *direction, const QString &text)
{
    m_gathered.append(QJsonObject{{"n", m_next++}, {"direction", direction}, {"text", text}});
    if (!m_gathering.isActive())
        m_gathering.start();
}

void LogFeed::flush()
{
    m_gathering.stop();
    if (m_gathered.isEmpty())
        return;
    for (const auto &line : std::as_const(m_gathered))
        m_last.append(line);
    while (m_last.size() > remembered)
        m_last.removeFirst();
    emit told(logMessage(std::exchange(m_gathered, {})));
}

QJsonObject LogFeed::message() const { return logMessage(m_last); }
