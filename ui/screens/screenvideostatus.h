#pragma once

#include "protocol/dt3property.h"
#include "ui/screens/portinfoscreen.h"

/// The signal on a port: link, picture, sound.
class ScreenVideoStatus : public PortInfoScreen
{
    Q_OBJECT
public:
    /// @param input of which side.
    ScreenVideoStatus(QWidget *parent, bool input);

    void setPort(const QString &port) override;

protected:
    void updateValue(const QString &property, const QString &value) override;
    void forgetValues() override;
    void showRows() override;

private:
    bool isDisplayPort() const { return portType().contains(QLatin1StringView("DP")); }
    void showValues();
    void showSignal();
    QString bandwidth() const;
    QString hdcp() const;
    QString raw(const char *name) const { return m_raw.value(QLatin1StringView(name)); }

    const bool m_input;
    Dt3Property m_statusNode, m_audioNode;
    QList<DataLine *> m_rows;     ///< Those that show a value, without the headings.
    QMap<QString, QString> m_raw; ///< By the property's name.
};
