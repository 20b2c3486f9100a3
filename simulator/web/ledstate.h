#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QTimer>

#include <array>

class TestBed;

/// The LEDs as pages know them.
class LedState : public QObject
{
    Q_OBJECT
public:
    /// @param bed borrowed. @param panels how many the frame has.
    LedState(const TestBed &bed, int panels, QObject *parent = nullptr);

    /// The "leds" message: all of them.
    QJsonObject message() const;

signals:
    /// An LED is not what message() or the last changed() said.
    void changed(int panel, int number, int value);

private:
    void refresh();

    const TestBed &m_bed;
    int m_panels;
    std::array<std::array<int, 41>, 4> m_told{}; // by panel and number, both from 1
    QTimer m_settled;
};
