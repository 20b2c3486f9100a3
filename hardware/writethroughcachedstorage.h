#pragma once

#include "hardware/randomaccessstorageinterface.h"

#include <vector>

/// A storage with a copy of all its bytes in memory: reads are answered from the copy, writes go to the
/// storage first and reach the copy only if that worked. The storage is borrowed and outlives the object.
/// Until a load has succeeded every access tries one, and fails with its result.
class WriteThroughCachedStorage : public RandomAccessStorageInterface
{
public:
    /// Takes the memory, but reads nothing yet.
    explicit WriteThroughCachedStorage(RandomAccessStorageInterface *storage);

    /// Reads the whole storage, again if need be.
    StorageResult load();

    uint32_t size() const override { return m_storage->size(); }
    StorageResult read(uint32_t offset, void *buf, uint32_t len) override;
    StorageResult write(uint32_t offset, const void *data, uint32_t len) override;
    StorageResult fill(uint32_t offset, uint8_t value, uint32_t len) override;

private:
    StorageResult prepare(uint32_t offset, uint32_t len);

    RandomAccessStorageInterface *m_storage;
    std::vector<uint8_t> m_cache;
    bool m_loaded = false;
};
