#pragma once

#include "frontpanel/controlpanelhandler.h"

#include <QByteArray>
#include <QMap>
#include <QPair>
#include <QString>
#include <QWidget>

#include <array>
#include <memory>

/// One record as the panel's driver writes and reads it.
QByteArray eventRecord(int seconds, int microseconds, int type, int code, int value);

/// The far side of an event device: a pseudo-terminal in raw mode, whose near side has a path.
class EventDevice
{
public:
    EventDevice();
    ~EventDevice();
    EventDevice(const EventDevice &) = delete;
    EventDevice &operator=(const EventDevice &) = delete;

    QString path() const { return m_path; }
    bool send(const QByteArray &bytes);
    /// Waits; fewer bytes after five seconds without any.
    QByteArray receive(qsizetype size);
    /// Pulls the plug: the near side reads end of file.
    void vanish();

private:
    int m_far = -1;
    int m_near = -1; ///< Keeps the terminal alive and raw while nobody else has it open.
    QString m_path;
};

/// Three panels with their handlers.
class PanelFront
{
public:
    PanelFront();

    std::array<ControlPanelHandler *, 3> panels() const;
    /// The LED records since the last call, in order of writing per panel: "2.17=1" is LED 17 of panel 2.
    QStringList takeWrites();
    /// What is lit after all records so far, in order of panel and LED; not LED 0, which belongs to no button.
    QStringList lit();

private:
    std::array<EventDevice, 3> m_devices;
    std::array<std::unique_ptr<ControlPanelHandler>, 3> m_panels;
    QMap<QPair<int, int>, int> m_lit;
};

/// Takes the focus and notes keys: "D+" is a press, "745-" a release.
class KeyRecorder : public QWidget
{
public:
    using QWidget::QWidget;

    bool focus(); ///< False if the window system does not play along.
    QString keys() const { return m_keys.join(' '); }

protected:
    void keyPressEvent(QKeyEvent *event) override { note(event, '+'); }
    void keyReleaseEvent(QKeyEvent *event) override { note(event, '-'); }

private:
    void note(QKeyEvent *event, char what);

    QStringList m_keys;
};
