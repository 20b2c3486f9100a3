#include "simulator/web/heldkeys.h"

#include <QJsonArray>
#include <QScopedValueRollback>

namespace {

constexpr HeldKeys::Holder others = nullptr;

} // namespace

HeldKeys::HeldKeys(TestBed &bed, QObject *parent)
    : QObject(parent)
    , m_bed(bed)
{
    connect(&bed, &TestBed::buttonSet, this,
        [this](int panel, int button, bool pressed) { note(PageKey::ofButton(panel, button), pressed); });
    connect(&bed, &TestBed::keyboardKeySet, this, [this](int code, bool pressed) {
        if (const std::optional<PageKey> key = PageKey::ofKeyboard(code))
            note(*key, pressed);
    });
}

void HeldKeys::press(Holder holder, PageKey key)
{
    std::set<Holder> &holders = m_holders[key];
    const bool isFirst = holders.empty();
    holders.insert(holder);
    if (!isFirst)
        return;
    const QScopedValueRollback setting(m_setting, true);
    key.set(m_bed, true);
    emit changed();
}

void HeldKeys::release(Holder holder, PageKey key)
{
    const auto held = m_holders.find(key);
    if (held == m_holders.end() || held->second.erase(holder) == 0 || !held->second.empty())
        return;
    m_holders.erase(held);
    const QScopedValueRollback setting(m_setting, true);
    key.set(m_bed, false);
    emit changed();
}

void HeldKeys::releaseAll(Holder holder)
{
    const auto all = m_holders; // a copy: release() takes from it
    for (const auto &[key, holders] : all)
        release(holder, key);
}

void HeldKeys::note(PageKey key, bool pressed)
{
    if (m_setting)
        return;
    if (pressed)
        m_holders[key].insert(others);
    else
        m_holders.erase(key);
    emit changed();
}

QJsonObject HeldKeys::message() const
{
    QJsonArray keys;
    for (const auto &[key, holders] : m_holders)
        keys.append(key.name());
    return {{"type", "held"}, {"keys", keys}};
}
