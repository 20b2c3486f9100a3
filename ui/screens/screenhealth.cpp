#include "ui/screens/screenhealth.h"

#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "ui/screens/healthlabel.h"
#include "ui/screens/screeniohealth.h"

namespace {

/// "5.0V" for "Voltage0_5V0"; empty for a rail that is not fitted.
QString sensorCaption(const QString &name)
{
    if (name.startsWith('T'))
        return QStringLiteral("Temp°C");
    if (!name.startsWith('V'))
        return name;
    const QString rail = name.section('_', 1);
    if (rail == QLatin1StringView("0V0"))
        return {};
    const qsizetype point = rail.indexOf('V');
    if (point < 0)
        return name;
    return rail.first(point) + '.' + (rail.endsWith('V') ? QStringLiteral("0") : rail.sliced(point + 1)) + 'V';
}

} // namespace

ScreenHealth::ScreenHealth(QWidget *parent)
    : ScreenData(parent)
{
    addRows({
        {"Uptime", &propDatetimeUptime},
        {"Control Panel", new ScreenCecuHealth(parent)}, // the parent's, as the two below
        {"Motherboard", new ScreenHsmbHealth(parent)},
        {"IO ports", new ScreenIoList(parent)},
    });
    showBackButton();
}

ScreenBoardHealth::ScreenBoardHealth(QWidget *parent, const QString &sensors)
    : ScreenData(parent)
    , m_sensors(sensors)
{
    showBackButton();
    connect(
        VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenBoardHealth::variantIdentified);
    beginPendingEntry();
}

void ScreenBoardHealth::variantIdentified()
{
    get(m_sensors);
    endPendingEntry();
}

void ScreenBoardHealth::propertyReceived(const QString &property, const QString &value)
{
    if (m_properties.find(property) == m_properties.end()) {
        const QString caption = sensorCaption(property.section('.', -1));
        if (caption.isEmpty())
            return;
        auto &sensor = m_properties[property] = std::make_unique<Dt3Property>();
        sensor->setPath(property);
        DataLine *line = addLine(caption);
        addValue(line, sensor.get(), newHealthLabel(this));
        showDisplayOnly(line);
    }
    ScreenData::propertyReceived(property, value);
}
