#pragma once

#include "protocol/dt3property.h"
#include "ui/screendata.h"

class PortInfoScreen;
struct SharedScreens;

/// One port: what there is to see and set. It learns from the port what kind that is, passes it on to the pages
/// below, and has no row before. The base of those for inputs and for outputs.
class ScreenPort : public ScreenData
{
    Q_OBJECT
public:
    void setPort(const QString &port) override;

protected:
    /// @param input which side. @param settings, audio become the second and third page below it.
    ScreenPort(QWidget *parent, bool input, PortInfoScreen *settings, ScreenData *audio);

    /// The page is told of the port and its kind too, as that of the settings is.
    void keepInformed(PortInfoScreen *page) { m_informed.append(page); }

    void updateValue(const QString &property, const QString &value) override;

private:
    void setType(const QString &type);

    Dt3Property m_portNode;
    QList<PortInfoScreen *> m_informed;
    QList<bool> m_shown; ///< By row; none until the type is known.
};

class ScreenInputPort : public ScreenPort
{
    Q_OBJECT
public:
    ScreenInputPort(QWidget *parent, const SharedScreens &shared);
};

class ScreenOutputPort : public ScreenPort
{
    Q_OBJECT
public:
    /// @param audio also what an audio-only output opens at once.
    ScreenOutputPort(QWidget *parent, const SharedScreens &shared, PortInfoScreen *audio);
};
