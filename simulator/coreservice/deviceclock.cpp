#include "simulator/coreservice/deviceclock.h"

#include "simulator/coreservice/valuerule.h"

#include <QScopedValueRollback>

namespace {

const QString node = "/MANAGEMENT/DATETIME";
const QString timeFormat = "yyyy-MM-dd'T'HH:mm:ss";

QString uptimeText(qint64 seconds)
{
    const QTime rest = QTime(0, 0).addSecs(static_cast<int>(seconds % 86400));
    return QString("%1d %2").arg(seconds / 86400).arg(rest.toString("HH:mm:ss"));
}

} // namespace

DeviceClock::DeviceClock(PropertyTree &tree, QObject *parent)
    : QObject(parent)
    , m_tree(tree)
    , m_offset(QDateTime::currentDateTime().offsetFromUtc() * qint64{1000})
{
    m_upSince.start();
    m_tick.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, &DeviceClock::tick);
    m_tree.addProperty(node, "CurrentTime", ValueRule::fixed, "");
    m_tree.addProperty(node, "Uptime", ValueRule::fixed, "");
    m_tree.addMethod(node, "setTime", [this](const QString &time) { return setTime(time); });
    connect(&m_tree, &PropertyTree::aboutToRead, this, [this](const QString &read) {
        if (read == node)
            refresh();
    });
    connect(&m_tree, &PropertyTree::valueChanged, this,
        [this](const QString &changed, const QString &name, const QString &value) {
            if (changed == node && name == "CurrentTime" && !m_isRefreshing)
                setTime(value);
        });
    connect(&m_tree, &PropertyTree::watchedChanged, this, [this](const QString &watchedNode, bool watched) {
        if (watchedNode != node)
            return;
        if (watched)
            scheduleTick();
        else
            m_tick.stop();
    });
}

QDateTime DeviceClock::now() const { return QDateTime::currentDateTimeUtc().addMSecs(m_offset); }

/// @param time "2024-05-06T12:34:56"; a half that is missing stays as it is.
QString DeviceClock::setTime(const QString &time)
{
    const QDateTime present = now();
    const QString dateHalf = time.section('T', 0, 0);
    const QString timeHalf = time.section('T', 1);
    const QDate date = dateHalf.isEmpty() ? present.date() : QDate::fromString(dateHalf, "yyyy-MM-dd");
    const QTime ofDay = timeHalf.isEmpty() ? present.time() : QTime::fromString(timeHalf, "HH:mm:ss");
    if (!time.contains('T') || !date.isValid() || !ofDay.isValid())
        return "not a time: " + time;
    m_offset += present.msecsTo(QDateTime(date, ofDay, Qt::UTC));
    refresh();
    return {};
}

void DeviceClock::refresh()
{
    const QScopedValueRollback guard(m_isRefreshing, true);
    m_tree.setValue(node + ".CurrentTime", now().toString(timeFormat));
    m_tree.setValue(node + ".Uptime", uptimeText(m_upSince.elapsed() / 1000));
}

void DeviceClock::tick()
{
    refresh();
    scheduleTick();
}

void DeviceClock::scheduleTick()
{
    m_tick.start(1000 - now().time().msec()); // the next full second
}
