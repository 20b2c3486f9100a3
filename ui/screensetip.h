#pragma once

#include "ui/screensetfields.h"

/// Edits an IPv4 address, octet by octet.
class ScreenSetIp : public ScreenSetFields
{
    Q_OBJECT
public:
    explicit ScreenSetIp(QWidget *parent);

    void setActive(bool active) override;
    void propertyReceived(const QString &property, const QString &value) override;

protected slots:
    void savePressed() override;
};
