#pragma once

#include "simulator/web/pagekey.h"

#include <QJsonValue>

/// What a page asks for.
struct PageMessage
{
    enum class Type { Press, Release, ReleaseAll, Turn, Command, Frame, StartRecording, StopRecording };

    static constexpr int mostDetents = 20;
    static constexpr int largest = 64 * 1024; ///< Bytes of UTF-8.

    Type type = Type::ReleaseAll;
    std::optional<PageKey> key; ///< Press and Release have one.
    int detents = 0;            ///< Turn; anticlockwise when negative, never 0.
    bool fast = false;          ///< Turn.
    int row = 0;                ///< Frame; of the frame table, from 1.
    QJsonValue id;              ///< Command and the recorder: comes back with the result.
    QString line;               ///< Command.
};

/// Nothing for a text that is not exactly one of these messages.
std::optional<PageMessage> parsePageMessage(const QString &text);
