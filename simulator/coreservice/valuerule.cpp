#include "simulator/coreservice/valuerule.h"

#include <QHostAddress>
#include <QStringList>

namespace {

std::optional<QString> acceptedBoolean(const QString &value)
{
    if (value == "true" || value == "1")
        return "true";
    if (value == "false" || value == "0")
        return "false";
    return std::nullopt;
}

std::optional<QString> acceptedAddress(const QString &value)
{
    const QHostAddress address(value);
    if (value.count('.') != 3 || address.protocol() != QAbstractSocket::IPv4Protocol)
        return std::nullopt;
    return address.toString();
}

bool isInRange(const QStringList &bounds, const QString &value)
{
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber && bounds[0].toDouble() <= number && number <= bounds[1].toDouble();
}

} // namespace

std::optional<QString> ValueRule::accepted(const QString &rule, const QString &value)
{
    if (rule.isEmpty())
        return std::nullopt;
    if (rule == anyText)
        return value;
    if (rule == boolean)
        return acceptedBoolean(value);
    if (rule == ipAddress)
        return acceptedAddress(value);
    const QStringList bounds = rule.split("..");
    const bool isAllowed = bounds.size() == 2 ? isInRange(bounds, value) : rule.split('|').contains(value);
    return isAllowed ? std::optional(value) : std::nullopt;
}
