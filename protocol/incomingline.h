#pragma once

#include <QByteArrayView>
#include <QString>

/// What one line from the device means. The views point into the line.
struct IncomingLine
{
    enum Kind {
        BlockStart, ///< {0042: the answer to the request with this signature begins.
        BlockEnd,   ///< }
        Node,       ///< n- PATH: a child node, in an answer.
        Opened,     ///< o- PATH: an OPEN is confirmed.
        Property,   ///< pr or pw PATH=VALUE: a property, in an answer.
        Changed,    ///< CHG PATH=VALUE
        Added,      ///< NEW PATH: a node came
        Removed,    ///< DEL PATH: a node went
        Other       ///< Anything else; to be ignored.
    };

    Kind kind = Other;
    quint16 signature = 0;    ///< Of BlockStart.
    QByteArrayView path;      ///< A node's or a property's.
    qsizetype nodeLength = 0; ///< How much of a property's path is its node.
    QByteArrayView value;     ///< Of Property and Changed, still escaped.

    static IncomingLine parse(QByteArrayView line);
};

/// UTF-8 as text; bytes that are none become U+FFFD.
QString textOf(QByteArrayView utf8);

/// As textOf(), with the backslash escapes of a value resolved.
/// @param spare a text that nobody needs any more, whose memory a long value takes.
QString unescapeValue(QByteArrayView escaped, QString *spare = nullptr);

/// Values from this length on are long, in bytes. Memory in such lumps is better used again: what the allocator makes
/// of it in between varies.
constexpr qsizetype longValue = 1 << 16;
