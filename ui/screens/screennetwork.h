#pragma once

#include "ui/screendata.h"
#include "ui/screenwarning.h"

struct SharedScreens;

/// The network as it is, and its static addresses, which matter while there is no DHCP. The editors write each value
/// at once; Save makes the device take them into use.
class ScreenNetwork : public ScreenData
{
    Q_OBJECT
public:
    ScreenNetwork(QWidget *parent, const SharedScreens &shared);

protected slots:
    /// Refuses addresses that could not reach their gateway.
    void savePressed() override;

protected:
    void updateValue(const QString &property, const QString &value) override;

private:
    QString shownBy(int row) const;
    bool isDhcpOn() const;
    bool isGatewayInSubnet() const;

    ScreenWarning m_warning;
};
