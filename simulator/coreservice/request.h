#pragma once

#include <QString>

/// One line of a client, taken apart.
struct Request
{
    enum class Verb { Malformed, Get, Set, Call, Open, Close };

    QString signature; ///< Four or five digits, as received; empty for a line typed without one.
    Verb verb = Verb::Malformed;
    QString path;  ///< Node, property or, for Call, everything between the verb and the final ")".
    QString value; ///< Set only.
};

/// Never fails: what does not read as a request is Malformed, with its signature where it has one.
Request parseRequest(const QString &line);

/// A value as it travels in "pr", "pw" and "CHG" lines: line ends, tabs and # % ( ) { } \ behind a backslash.
QString escapeValue(const QString &value);
