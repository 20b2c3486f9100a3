#pragma once

#include "frontpanel/controlpanelhandler.h"
#include "simulator/hardware/pseudoterminal.h"

#include <QMap>
#include <QStringList>
#include <QWidget>

#include <array>
#include <chrono>

/// One record as the panel's driver writes and reads it.
QByteArray record(int type, int code, int value, std::chrono::microseconds time = {});

/// Three panels with their handlers.
class PanelFront
{
public:
    std::array<ControlPanelHandler *, 3> panels() { return {&m_panel1, &m_panel2, &m_panel3}; }
    /// The LED records since the last call, in order of writing per panel: "2.17=1" is LED 17 of panel 2.
    QStringList takeWrites();
    /// What is lit after all records so far, in order of panel and LED; not LED 0, which belongs to no button.
    QStringList lit();

private:
    std::array<PseudoTerminal, 3> m_devices;
    ControlPanelHandler m_panel1{m_devices[0].farPath(), 0};
    ControlPanelHandler m_panel2{m_devices[1].farPath(), 40};
    ControlPanelHandler m_panel3{m_devices[2].farPath(), 80};
    QMap<int, QString> m_lit;
};

/// Takes the focus and notes the keys that reach it, but takes none: Qt offers each to every parent, too.
class KeyRecorder : public QWidget
{
public:
    using QWidget::QWidget;
    bool focus();     ///< False if the window system does not play along.
    QStringList keys; ///< "D+" is a press, "745-" a release.

protected:
    void keyPressEvent(QKeyEvent *event) override { note(event, '+'); }
    void keyReleaseEvent(QKeyEvent *event) override { note(event, '-'); }

private:
    void note(QKeyEvent *event, char what);
};
