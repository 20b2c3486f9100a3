#include "simulator/arguments.h"

using std::chrono::milliseconds;

FrontKey Arguments::key()
{
    FrontKey key;
    fail(takeKey(m_layout, &m_words, &key));
    return key;
}

int Arguments::number(const char *what, int lowest, int highest)
{
    bool isNumber = false;
    const int value = word(what).toInt(&isNumber);
    if (!isNumber || value < lowest || value > highest)
        fail(QStringLiteral("%1 must be a whole number from %2 to %3").arg(what).arg(lowest).arg(highest));
    return value;
}

int Arguments::number(const char *what, int lowest, int highest, int fallback)
{
    return m_words.isEmpty() ? fallback : number(what, lowest, highest);
}

double Arguments::decimal(const char *what, double lowest, double highest)
{
    bool isNumber = false;
    const double value = word(what).toDouble(&isNumber);
    if (!isNumber || !(value >= lowest && value <= highest))
        fail(QStringLiteral("%1 must be a number from %2 to %3").arg(what).arg(lowest).arg(highest));
    return value;
}

double Arguments::decimal(const char *what, double lowest, double highest, double fallback)
{
    return m_words.isEmpty() ? fallback : decimal(what, lowest, highest);
}

milliseconds Arguments::time(const char *what)
{
    return milliseconds(number(what, 1, static_cast<int>(longestTime.count())));
}

milliseconds Arguments::time(const char *what, milliseconds fallback)
{
    return m_words.isEmpty() ? fallback : time(what);
}

milliseconds Arguments::within(milliseconds fallback)
{
    if (m_words.size() < 2 || m_words[m_words.size() - 2] != "within")
        return fallback;
    Arguments last(m_layout, {m_words.takeLast()});
    m_words.removeLast();
    const milliseconds time = last.time("the time behind \"within\"");
    fail(last.error());
    return time;
}

QString Arguments::word(const char *what)
{
    if (m_words.isEmpty()) {
        fail(QStringLiteral("%1 is missing").arg(what));
        return {};
    }
    return m_words.takeFirst();
}

QString Arguments::word(const char *what, const QString &fallback) { return m_words.isEmpty() ? fallback : word(what); }

bool Arguments::takeWord(const char *word)
{
    if (m_words.isEmpty() || m_words.first() != word)
        return false;
    m_words.removeFirst();
    return true;
}

QString Arguments::text(const char *what)
{
    if (m_words.isEmpty())
        fail(QStringLiteral("%1 is missing").arg(what));
    QString all = m_words.join(' ');
    m_words.clear();
    return all;
}

void Arguments::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}

QString Arguments::error() const
{
    if (m_error.isEmpty() && !m_words.isEmpty())
        return QStringLiteral("\"%1\" is too much").arg(m_words.join(' '));
    return m_error;
}
