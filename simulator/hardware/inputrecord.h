#pragma once

#include <QByteArray>

#include <chrono>
#include <cstdint>

/// One record of an input device, apart from its time.
struct EventRecord
{
    uint16_t type;
    uint16_t code;
    int32_t value;
};

/// How a device's records look in bytes: in machine byte order, time first.
enum class RecordFormat {
    Compact, ///< 16 bytes, 32-bit time: panels and encoder.
    Native,  ///< This machine's own struct input_event: the keyboard.
};

constexpr qsizetype compactRecordSize = 16;

/// @param time since the epoch.
QByteArray encodeRecord(const EventRecord &record, std::chrono::microseconds time, RecordFormat format);

/// @param bytes compactRecordSize of them.
EventRecord decodeCompactRecord(const char *bytes);
