#pragma once

#include "hardware/storageresult.h"

#include <cstdint>

/// Bytes at addresses 0 to size() - 1. Offsets and lengths count bytes.
/// Every operation returns 0 or a stack of causes; nothing throws. What a failed read left in the buffer is undefined.
class RandomAccessStorageInterface
{
public:
    RandomAccessStorageInterface() = default;
    RandomAccessStorageInterface(const RandomAccessStorageInterface &) = delete;
    RandomAccessStorageInterface &operator=(const RandomAccessStorageInterface &) = delete;

    virtual uint32_t size() const = 0;
    virtual StorageResult read(uint32_t offset, void *buf, uint32_t len) = 0;
    virtual StorageResult write(uint32_t offset, const void *data, uint32_t len) = 0;
    /// Writes @p len times the byte @p value.
    virtual StorageResult fill(uint32_t offset, uint8_t value, uint32_t len) = 0;

    virtual ~RandomAccessStorageInterface() = default;
};
