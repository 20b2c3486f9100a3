#include "ui/screensetdatetime.h"

namespace {

QString half(const QString &dateTime, int index) { return dateTime.section('T', index, index); }

} // namespace

ScreenSetDateTime::ScreenSetDateTime(
    QWidget *parent, Half edited, std::initializer_list<Field> fields, const QString &separator)
    : ScreenSetFields(parent, fields, separator)
    , m_edited(edited)
{
}

ScreenSetTime::ScreenSetTime(QWidget *parent)
    : ScreenSetDateTime(
        parent, Half::Time, {{0, 23, true, 40}, {0, 59, true, 40}, {0, 59, true, 40}}, QStringLiteral(":"))
{
}

ScreenSetDate::ScreenSetDate(QWidget *parent)
    : ScreenSetDateTime(
        parent, Half::Date, {{1970, 2100, false, 70}, {1, 12, true, 40}, {1, 31, true, 40}}, QStringLiteral("-"))
{
}

void ScreenSetDateTime::setActive(bool active)
{
    if (!active) {
        Dt3Sink::close(node());
        return;
    }
    fetch();
    open(node());
}

void ScreenSetDateTime::propertyReceived(const QString &property, const QString &value)
{
    if (isEdited(property))
        showFields(half(value, static_cast<int>(m_edited)));
}

void ScreenSetDateTime::propertyChanged(const QString &property, const QString &value)
{
    if (isEdited(property))
        m_otherPart = half(value, 1 - static_cast<int>(m_edited));
}

void ScreenSetDateTime::savePressed()
{
    save(m_edited == Half::Time ? m_otherPart + 'T' + fields() : fields() + 'T' + m_otherPart);
}
