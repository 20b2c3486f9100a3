#include "simulator/hardware/inputrecord.h"

#include <cstring>
#include <linux/input.h>

namespace {

struct CompactRecord
{
    int32_t seconds;
    int32_t microseconds;
    EventRecord record;
};
static_assert(sizeof(CompactRecord) == compactRecordSize);

template <typename T> QByteArray bytesOf(const T &object)
{
    return QByteArray(reinterpret_cast<const char *>(&object), sizeof object);
}

} // namespace

QByteArray encodeRecord(const EventRecord &record, std::chrono::microseconds time, RecordFormat format)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = (time - seconds).count();
    if (format == RecordFormat::Compact)
        return bytesOf(CompactRecord{static_cast<int32_t>(seconds.count()), static_cast<int32_t>(rest), record});
    input_event event{};
    event.input_event_sec = seconds.count();
    event.input_event_usec = rest;
    event.type = record.type;
    event.code = record.code;
    event.value = record.value;
    return bytesOf(event);
}

EventRecord decodeCompactRecord(const char *bytes)
{
    CompactRecord whole;
    std::memcpy(&whole, bytes, sizeof whole);
    return whole.record;
}
