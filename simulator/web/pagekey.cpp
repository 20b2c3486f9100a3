#include "simulator/web/pagekey.h"

#include <QRegularExpression>

namespace {

constexpr struct
{
    const char *name;
    int code;
} keyboardKeys[] = {{"push", TestBed::pushKey}, {"escape", TestBed::escapeKey}};

} // namespace

std::optional<PageKey> PageKey::named(const QString &name)
{
    static const QRegularExpression button(QStringLiteral("\\A([1-3])\\.([1-9]|[1-3][0-9]|40)\\z"));
    for (const auto &key : keyboardKeys) {
        if (name == QLatin1String(key.name))
            return PageKey(0, key.code);
    }
    const QRegularExpressionMatch match = button.match(name);
    if (!match.hasMatch())
        return std::nullopt;
    return PageKey(match.captured(1).toInt(), match.captured(2).toInt());
}

std::optional<PageKey> PageKey::ofKeyboard(int code)
{
    for (const auto &key : keyboardKeys) {
        if (code == key.code)
            return PageKey(0, code);
    }
    return std::nullopt;
}

QString PageKey::name() const
{
    for (const auto &key : keyboardKeys) {
        if (!isButton() && m_number == key.code)
            return QString::fromLatin1(key.name);
    }
    return QStringLiteral("%1.%2").arg(m_panel).arg(m_number);
}

void PageKey::set(TestBed &bed, bool pressed) const
{
    if (isButton())
        bed.setButton(m_panel, m_number, pressed);
    else
        bed.setKeyboardKey(m_number, pressed);
}
