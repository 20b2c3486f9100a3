#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QTimer>

class Device;

/// What program and device say to each other, and the program's own messages, as numbered lines.
class LogFeed : public QObject
{
    Q_OBJECT
public:
    static constexpr int remembered = 200;

    /// @param device borrowed. @param firstNumber of the first line.
    LogFeed(Device &device, qint64 firstNumber, QObject *parent = nullptr);

    /// The number that the next line will get.
    qint64 nextNumber() const { return m_next; }
    /// Tells what is being gathered now.
    void flush();
    /// The "log" message with the lines that are remembered, those told last at its end.
    QJsonObject message() const;

signals:
    /// @param message a "log" message with the lines since the last one.
    void told(const QJsonObject &message);

private:
    void append(const char *direction, const QString &text);
    void appendAnswer(const QString &line);

    qint64 m_next;
    QJsonArray m_last;
    QJsonArray m_gathered;
    QTimer m_gathering;
};
