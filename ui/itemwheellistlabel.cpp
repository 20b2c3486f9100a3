#include "ui/itemwheellistlabel.h"

#include <algorithm>

ItemWheelListLabel::ItemWheelListLabel(QWidget *parent, bool wrap)
    : ItemWheel(parent)
    , m_wrap(wrap)
{
}

void ItemWheelListLabel::setOptions(const QStringList &options)
{
    m_options = options;
    m_committedText = m_options.value(0);
    setText(m_committedText);
}

void ItemWheelListLabel::clearOptions() { setOptions({}); }

void ItemWheelListLabel::addOption(const QString &text)
{
    if (m_options.contains(text))
        return;
    m_options.append(text);
    if (m_options.size() == 1)
        setCurrentText(text);
}

void ItemWheelListLabel::insertOption(const QString &before, const QString &text)
{
    const qsizetype index = m_options.indexOf(before);
    m_options.insert(index < 0 ? m_options.size() : index, text);
}

void ItemWheelListLabel::removeOption(const QString &text)
{
    const qsizetype index = m_options.indexOf(text);
    if (index < 0)
        return;
    m_options.removeAt(index);
    if (this->text() == text)
        setText(m_options.value(std::min(index, m_options.size() - 1)));
}

void ItemWheelListLabel::setCurrentText(const QString &text)
{
    if (!m_options.contains(text))
        qDebug("ItemWheelListLabel: No such option in list: %s", qUtf8Printable(text));
    m_committedText = text;
    setText(text);
}

void ItemWheelListLabel::scroll(int delta)
{
    const int index = static_cast<int>(m_options.indexOf(text()));
    const int n = optionCount();
    if (index < 0)
        return;
    const int target = m_wrap ? ((index + delta) % n + n) % n : std::clamp(index + delta, 0, n - 1);
    setText(m_options[target]);
    emit signalScrolled();
}
