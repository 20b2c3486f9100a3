#pragma once

#include "protocol/dt3property.h"
#include "ui/screendata.h"

#include <map>
#include <memory>

/// How the device feels.
class ScreenHealth : public ScreenData
{
    Q_OBJECT
public:
    explicit ScreenHealth(QWidget *parent);
};

/// The voltages and temperatures of one board, as many as it reports. The base of the two boards that no frame lacks.
class ScreenBoardHealth : public ScreenData
{
    Q_OBJECT
public:
    void propertyReceived(const QString &property, const QString &value) override;

protected:
    /// @param sensors what to read: a node's ".*".
    ScreenBoardHealth(QWidget *parent, const QString &sensors);

private slots:
    void variantIdentified();

private:
    const QString m_sensors;
    std::map<QString, std::unique_ptr<Dt3Property>> m_properties; ///< By path.
};

class ScreenCecuHealth : public ScreenBoardHealth
{
    Q_OBJECT
public:
    explicit ScreenCecuHealth(QWidget *parent)
        : ScreenBoardHealth(parent, QStringLiteral("/SYS/CECU/HEALTH.*"))
    {
    }
};

class ScreenHsmbHealth : public ScreenBoardHealth
{
    Q_OBJECT
public:
    explicit ScreenHsmbHealth(QWidget *parent)
        : ScreenBoardHealth(parent, QStringLiteral("/SYS/HSMB/HEALTH.*"))
    {
    }
};
