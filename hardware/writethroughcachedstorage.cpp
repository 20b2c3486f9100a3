#include "hardware/writethroughcachedstorage.h"

#include <algorithm>

WriteThroughCachedStorage::WriteThroughCachedStorage(RandomAccessStorageInterface *storage)
    : m_storage(storage)
    , m_cache(storage->size())
{
}

StorageResult WriteThroughCachedStorage::load()
{
    const StorageResult result = m_storage->read(0, m_cache.data(), static_cast<uint32_t>(m_cache.size()));
    m_loaded = result == 0; // a load that failed half-way may have spoilt the copy we had
    return result;
}

StorageResult WriteThroughCachedStorage::read(uint32_t offset, void *buf, uint32_t len)
{
    if (const StorageResult result = prepare(offset, len))
        return result;
    std::copy_n(m_cache.data() + offset, len, static_cast<uint8_t *>(buf));
    return 0;
}

StorageResult WriteThroughCachedStorage::write(uint32_t offset, const void *data, uint32_t len)
{
    if (const StorageResult result = prepare(offset, len))
        return result;
    if (const StorageResult result = m_storage->write(offset, data, len))
        return result;
    std::copy_n(static_cast<const uint8_t *>(data), len, m_cache.data() + offset);
    return 0;
}

StorageResult WriteThroughCachedStorage::fill(uint32_t offset, uint8_t value, uint32_t len)
{
    if (const StorageResult result = prepare(offset, len))
        return result;
    if (const StorageResult result = m_storage->fill(offset, value, len))
        return result;
    std::fill_n(m_cache.data() + offset, len, value);
    return 0;
}

StorageResult WriteThroughCachedStorage::prepare(uint32_t offset, uint32_t len)
{
    if (leavesStorage(offset, len, static_cast<uint32_t>(m_cache.size())))
        return storageOutOfRange;
    return m_loaded ? 0 : load();
}
