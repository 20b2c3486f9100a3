#pragma once

#include "simulator/web/pagekey.h"

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QStringList>

#include <array>
#include <map>

class Device;
class LcdStream;

/// Writes down what is pressed and turned, by whomever, as a script that does it again: actions and the time between
/// them, and before each next action what came of the last one, the program's requests that change something and LEDs
/// that have settled. The script begins with what a device as delivered would have to be told first.
class Recorder : public QObject
{
    Q_OBJECT
public:
    /// @param device, lcd borrowed.
    Recorder(Device &device, const LcdStream &lcd, QObject *parent = nullptr);

    bool isOn() const { return m_isOn; }
    void start();
    /// @return the script. Keys that are still down come up at its end.
    QString stop();
    /// The "recording" message.
    QJsonObject message() const;

public slots:
    /// A command line begins. Those that press and turn are seen on the front, and those that only look are left out.
    void noteCommand(const QString &line);

signals:
    void changed();

private:
    static constexpr qsizetype nowhere = -1;

    void noteButton(int panel, int button, bool pressed);
    void noteKeyboardKey(int code, bool pressed);
    void noteTurn(int detents, std::chrono::milliseconds spacing);
    void noteRequest(const QString &request);
    void noteLed(int panel, int number, int value);

    void add(const QString &line);
    void addAction(const QString &line);
    void addPause();
    void addOutcome();
    void addStart();
    bool isLast(qsizetype line) const { return line != nowhere && line == m_lines.size() - 1; }
    static int elapsed(const QElapsedTimer &since);
    void notePress(PageKey key);

    struct Press
    {
        qsizetype line; // where it is in the script
        QElapsedTimer since;
    };
    struct Led
    {
        int seen = 0;
        int recorded = 0;
        QElapsedTimer since; // it was last written with another value
    };

    Device &m_device;
    const LcdStream &m_lcd;
    bool m_isOn = false;
    QStringList m_lines;
    QElapsedTimer m_sinceAction;
    QStringList m_requests; // since the last action
    std::map<PageKey, Press> m_pressed;
    qsizetype m_turnLine = nowhere; // the last action, if it was a turn
    int m_turned = 0;
    std::chrono::milliseconds m_spacing{};
    std::array<std::array<Led, 41>, 4> m_leds; // by panel and number, both from 1
};
