#include "tests/soak/randomoperator.h"

using namespace std::chrono_literals;

namespace {

const QStringList presets{"Preset1", "Preset2", "Button1", "Button8", "Stage left", "2", "<b>bold</b>", "a.b=c",
    "\\{x\\}", " ", QString::fromUtf8("Café ☕"), QString(255, 'W')};
const QStringList values{"", "0", "1", "7", "-12", "99999999999", "0.35", "true", "false", "AUTO", "OFF", "-",
    "192.168.0.7", "1.2.3.4.5", "3.3;3.2;3.4;3.1;3.5", "I3;0;I300;x;;-1", "T3F;L3F;U", "<b>bold</b>", "a=b\\{c}",
    "STANDBY", "UPDATING", "47 Writing", QString::fromUtf8("Ärger ☕"), QString(5000, 'W')};
const QStringList booleans{"true", "false"};

} // namespace

// Weights are thousandths, about. There are some fifty deeds a second: a link or a lock is gone for seconds.
RandomOperator::RandomOperator(Front &front, QRandomGenerator &random)
    : m_front(front)
    , m_core(front.device().core())
    , m_random(random)
    , m_deeds{
          {280, [this] { m_front.tap(1 + m_random.bounded(3), 1 + m_random.bounded(40)); }},
          {20, [this] { holdKey(); }},
          {15, [this] { releaseKeys(); }},
          {90, [this] { m_front.device().bed().turnKnob(m_random.bounded(-4, 6), TestBed::slowDetent); }},
          {90, [this] { m_front.device().bed().turnKnob(m_random.bounded(-4, 6), TestBed::fastDetent); }},
          {130, [this] { m_front.tapKey(TestBed::pushKey); }},
          {20, [this] { m_front.tapKey(TestBed::escapeKey); }},
          {250, [this] { changeProperty(); }},
          {20, [this] { m_core.addPreset(anyOf(presets)); }},
          {20, [this] { m_core.removePreset(anyOf(presets)); }},
          {10, [this] { m_core.callMethod("/MEDIA/PRESET/" + anyOf(presets) + ":load", {}); }},
          {3, [this] { m_core.startUpgrade(std::chrono::milliseconds(m_random.bounded(1500))); }},
          {3, [this] { m_core.callMethod("/MANAGEMENT/POWER:standby", {}); }},
          {10, [this] { m_core.callMethod("/MANAGEMENT/POWER:wakeUp", {}); }},
          {3, [this] { m_core.setProperty("/SYS/CECU/LCD.ControlLock", "true"); }},
          {15, [this] { m_core.setProperty("/SYS/CECU/LCD.ControlLock", "false"); }},
          {5, [this] { m_core.setProperty("/SYS/CECU/LCD.AutoTake", anyOf(booleans)); }},
          {4, [this] { m_core.dropLink(); }},
          {20, [this] { restoreLink(); }},
      }
{
}

void RandomOperator::act()
{
    int all = 0;
    for (const Deed &deed : m_deeds)
        all += deed.weight;
    const Deed *chosen = m_deeds.data();
    for (int at = m_random.bounded(all); at >= chosen->weight; ++chosen)
        at -= chosen->weight;
    chosen->act();
    Front::pass(m_random.bounded(40)); // also in the middle of a slide

    for (const QString &request : m_front.requests()) {
        const QString path = request.section(' ', 1);
        // the root says who the device is: it does not become another one while it runs
        if (request.startsWith("GET ") && m_core.property(path) && !path.startsWith("/.")
            && !m_properties.contains(path))
            m_properties.append(path);
    }
    m_front.takeRequests();
    m_front.takeLeds();
}

void RandomOperator::rest()
{
    restoreLink();
    releaseKeys();
    for (const auto &[path, value] : m_original)
        m_core.setProperty(path, value);
    m_core.callMethod("/SYS:factoryDefaults", {});
    m_core.startUpgrade(1ms); // the end of this one ends any
}

void RandomOperator::holdKey()
{
    m_held.append({1 + m_random.bounded(3), 1 + m_random.bounded(40)});
    m_front.hold(m_held.last().first, m_held.last().second, true);
}

void RandomOperator::releaseKeys()
{
    for (const auto &[panel, button] : std::exchange(m_held, {}))
        m_front.hold(panel, button, false);
}

void RandomOperator::changeProperty()
{
    if (m_properties.isEmpty())
        return;
    const QString path = anyOf(m_properties);
    m_original.try_emplace(path, *m_core.property(path));
    m_core.setProperty(path, anyOf(values));
}

void RandomOperator::restoreLink()
{
    if (!m_core.isLinkUp() && !m_core.restoreLink())
        qFatal("Somebody has taken the port of the core service");
}
