#pragma once

#include <QStringList>

/// A line cut into words at its blanks.
struct Words
{
    QStringList list;
    QString error; ///< Not empty: what is wrong with the line.
};

/// Double quotes keep blanks together, anywhere in a word; \" and \\ stand for the characters themselves, and "" is
/// an empty word. A # that begins a word begins a comment.
Words splitWords(const QString &line);
