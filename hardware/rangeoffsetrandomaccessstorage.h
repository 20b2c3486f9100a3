#pragma once

#include "hardware/randomaccessstorageinterface.h"

/// The part of a storage that starts at @p base. The storage is borrowed and outlives the object.
/// The length is what size() tells; accesses are bounded by the end of the underlying storage.
class RangeOffsetRandomAccessStorage : public RandomAccessStorageInterface
{
public:
    RangeOffsetRandomAccessStorage(RandomAccessStorageInterface *storage, uint32_t base, uint32_t length);

    uint32_t size() const override { return m_length; }
    StorageResult read(uint32_t offset, void *buf, uint32_t len) override;
    StorageResult write(uint32_t offset, const void *data, uint32_t len) override;
    StorageResult fill(uint32_t offset, uint8_t value, uint32_t len) override;

private:
    bool wraps(uint32_t offset) const { return offset > UINT32_MAX - m_base; }

    RandomAccessStorageInterface *m_storage;
    uint32_t m_base;
    uint32_t m_length;
};
