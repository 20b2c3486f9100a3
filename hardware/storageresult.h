#pragma once

#include <cstdint>

/// Result of a bus or storage operation: 0 is success, anything else a stack of causes, one nibble each,
/// the outermost in the low nibble. 0x22: an EEPROM (2) could not be reached because its bus timed out (2).
using StorageResult = uint32_t;

/// Offset or length outside the storage.
constexpr StorageResult storageOutOfRange = 1;

/// Puts @p code on top of @p cause (0: there is none). Codes above 14 are kept as 15; 0 is no failure and adds nothing.
/// Eight causes fill the value; from then on the innermost is forgotten, so an error stays one.
constexpr StorageResult pushed(StorageResult cause, uint32_t code)
{
    if (code == 0)
        return cause;
    return cause << 4 | (code > 14 ? 15 : code);
}

/// Whether @p len bytes at @p offset leave a storage of @p size bytes; no sum overflows on the way.
constexpr bool leavesStorage(uint32_t offset, uint32_t len, uint32_t size)
{
    return offset > size || len > size - offset;
}
