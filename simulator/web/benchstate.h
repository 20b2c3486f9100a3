#pragma once

#include <QJsonObject>
#include <QObject>
#include <QTimer>

class Device;

/// The switches and lamps of the bench, read from the core service: link, locks, upgrade, power supplies, presets and
/// the ports' signals.
class BenchState : public QObject
{
    Q_OBJECT
public:
    /// @param device borrowed.
    explicit BenchState(Device &device, QObject *parent = nullptr);

    /// The "bench" message.
    const QJsonObject &message() const { return m_message; }

signals:
    void changed();

private:
    QJsonObject read() const;
    void refresh();

    Device &m_device;
    QJsonObject m_message;
    QTimer m_refresh; // a change rarely comes alone
};
