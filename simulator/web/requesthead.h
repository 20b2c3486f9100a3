#pragma once

#include <QByteArray>

/// The head of an HTTP request as far as the server cares: who is asked, from where, for what.
struct RequestHead
{
    static constexpr qsizetype longest = 8192;       ///< Bytes of a head, with its blank line.
    static constexpr qint64 longestBody = 64 * 1024; ///< Bytes.

    int refusal = 0;   ///< The HTTP status to answer with; 0 for a request in order. The rest is good only then.
    QByteArray method; ///< GET or POST.
    QByteArray target; ///< Begins with "/".
    QByteArray host;   ///< As the client wrote it: a loopback name, with or without a port.
    qint64 bodySize = 0;
    bool isUpgrade = false;       ///< It asks for a WebSocket.
    bool expectsContinue = false; ///< The client sends the body only when told to.

    bool isFor(const QByteArray &path) const { return target == path || target.startsWith(path + '?'); }
};

/// @param text up to and with the blank line. Everything out of the ordinary is refused: what this reads and what
/// others would read of the same bytes must not differ.
RequestHead parseRequestHead(const QByteArray &text);
