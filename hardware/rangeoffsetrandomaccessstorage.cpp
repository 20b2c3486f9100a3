#include "hardware/rangeoffsetrandomaccessstorage.h"

RangeOffsetRandomAccessStorage::RangeOffsetRandomAccessStorage(
    RandomAccessStorageInterface *storage, uint32_t base, uint32_t length)
    : m_storage(storage)
    , m_base(base)
    , m_length(length)
{
}

StorageResult RangeOffsetRandomAccessStorage::read(uint32_t offset, void *buf, uint32_t len)
{
    return wraps(offset) ? storageOutOfRange : m_storage->read(offset + m_base, buf, len);
}

StorageResult RangeOffsetRandomAccessStorage::write(uint32_t offset, const void *data, uint32_t len)
{
    return wraps(offset) ? storageOutOfRange : m_storage->write(offset + m_base, data, len);
}

StorageResult RangeOffsetRandomAccessStorage::fill(uint32_t offset, uint8_t value, uint32_t len)
{
    return wraps(offset) ? storageOutOfRange : m_storage->fill(offset + m_base, value, len);
}
