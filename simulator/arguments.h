#pragma once

#include "simulator/frontkey.h"

#include <QStringList>

#include <chrono>

/// The words behind a command's name, taken off one after the other. What is missing or wrong is remembered, the first
/// of it, and the value returned then is of no meaning: ask error() when all have been taken. A call with a fallback
/// takes what may be left out.
class Arguments
{
public:
    static constexpr std::chrono::milliseconds longestTime{600000};

    /// @param layout borrowed; gives the keys their places.
    Arguments(const PanelLayout &layout, const QStringList &words)
        : m_layout(layout)
        , m_words(words)
    {
    }

    FrontKey key();
    int number(const char *what, int lowest, int highest);
    int number(const char *what, int lowest, int highest, int fallback);
    double decimal(const char *what, double lowest, double highest);
    double decimal(const char *what, double lowest, double highest, double fallback);
    /// A time in milliseconds, up to longestTime.
    std::chrono::milliseconds time(const char *what);
    std::chrono::milliseconds time(const char *what, std::chrono::milliseconds fallback);
    /// The last two words, if they are "within MS". Ask before what stands in front of it.
    std::chrono::milliseconds within(std::chrono::milliseconds fallback);
    /// The next word.
    QString word(const char *what);
    QString word(const char *what, const QString &fallback);
    /// Takes the next word if it is this one.
    bool takeWord(const char *word);
    /// All that is left, words joined by one blank.
    QString text(const char *what);

    /// Notes a fault that only the command can see.
    void fail(const QString &error);
    /// What was wrong, or what nobody took; empty when all is well.
    QString error() const;

private:
    const PanelLayout &m_layout;
    QStringList m_words;
    QString m_error;
};
