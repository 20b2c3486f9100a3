#pragma once

#include "protocol/dt3property.h"
#include "ui/screendata.h"

/// The signal on a port: link, picture, sound.
class ScreenVideoStatus : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenVideoStatus(QWidget *parent);

    void setPort(const QString &port) override;
    /// An empty text leaves what was known.
    void setPortInfo(const QString &portType, bool input);

protected:
    void updateValue(const QString &property, const QString &value) override;
    void forgetValues() override;

private:
    bool isDisplayPort() const { return m_portType.contains(QLatin1StringView("DP")); }
    void showRows();
    void showValues();
    void showSignal();
    QString bandwidth() const;
    QString hdcp() const;
    QString raw(const char *name) const { return m_raw.value(QLatin1StringView(name)); }

    QString m_portType;
    bool m_input = true;
    Dt3Property m_statusNode, m_audioNode;
    QList<DataLine *> m_rows;     ///< Those that show a value, without the headings.
    QMap<QString, QString> m_raw; ///< By the property's name.
};
