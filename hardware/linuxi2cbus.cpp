#include "hardware/linuxi2cbus.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <mutex>
#include <vector>

namespace {

constexpr uint32_t longestMessage = UINT16_MAX;

/// A register address as it goes over the wire: high byte first.
struct RegisterAddress
{
    RegisterAddress(uint32_t address, uint8_t addressBytes)
        : length(addressBytes == 1 || addressBytes == 2 ? addressBytes : 4)
    {
        for (uint32_t i = 0; i < length; ++i)
            bytes[i] = static_cast<uint8_t>(address >> 8 * (length - 1 - i));
    }

    uint32_t length;
    std::array<uint8_t, 4> bytes{};
};

i2c_msg message(uint8_t devAddr, uint16_t flags, const void *bytes, uint32_t len)
{
    i2c_msg result{};
    result.addr = devAddr >> 1;
    result.flags = flags;
    result.len = static_cast<uint16_t>(len);
    result.buf = static_cast<uint8_t *>(const_cast<void *>(bytes)); // the kernel writes to it for I2C_M_RD only
    return result;
}

} // namespace

int LinuxI2cBus::open(const char *path)
{
    if (DeviceFile::open(path) < 0)
        return -1;
    unsigned long functionality = 0; // the kernel fills a long, whatever its headers say of the bits
    const bool answered = ioctl(I2C_FUNCS, &functionality) >= 0;
    m_functionality = answered ? static_cast<uint32_t>(functionality) : 0;
    if (can(I2C_FUNC_I2C))
        return 0;
    close();
    return -1;
}

void LinuxI2cBus::lock() { m_mutex.lock(); }

void LinuxI2cBus::unlock() { m_mutex.unlock(); }

StorageResult LinuxI2cBus::recoverBus()
{
    if (!can(I2C_FUNC_PROTOCOL_MANGLING | I2C_FUNC_NOSTART))
        return failed;
    const std::lock_guard guard(m_mutex);
    for (int pulse = 0; pulse < 9; ++pulse) {
        std::array messages{message(0, I2C_M_NOSTART | I2C_M_STOP, nullptr, 0)};
        if (transfer(messages) != 0)
            return failed;
    }
    return 0;
}

StorageResult LinuxI2cBus::read(
    uint8_t devAddr, uint32_t regAddr, void *buf, uint32_t len, const I2cTransferOptions &options)
{
    if (len > longestMessage)
        return failed;
    const std::lock_guard guard(m_mutex);
    if (const StorageResult result = setTimeout(options))
        return result;
    const RegisterAddress address(regAddr, options.addressBytes);
    std::array messages{
        message(devAddr, 0, address.bytes.data(), address.length), message(devAddr, I2C_M_RD, buf, len)};
    if ((options.flags & I2cTransferOptions::separateMessages) == 0)
        return transfer(messages);
    if (const StorageResult result = transfer(std::span(messages).first(1)))
        return result;
    return transfer(std::span(messages).last(1));
}

StorageResult LinuxI2cBus::write(
    uint8_t devAddr, uint32_t regAddr, const void *data, uint32_t len, const I2cTransferOptions &options)
{
    const RegisterAddress address(regAddr, options.addressBytes);
    if (len > longestMessage - address.length)
        return failed;
    const std::lock_guard guard(m_mutex);
    if (const StorageResult result = setTimeout(options))
        return result;
    if (can(I2C_FUNC_NOSTART)) {
        std::array messages{
            message(devAddr, 0, address.bytes.data(), address.length), message(devAddr, I2C_M_NOSTART, data, len)};
        return transfer(messages);
    }
    std::vector<uint8_t> bytes(address.length + len);
    std::copy_n(address.bytes.begin(), address.length, bytes.begin());
    if (len > 0)
        std::memcpy(bytes.data() + address.length, data, len);
    std::array messages{message(devAddr, 0, bytes.data(), address.length + len)};
    return transfer(messages);
}

StorageResult LinuxI2cBus::setTimeout(const I2cTransferOptions &options)
{
    const uint32_t busSpeed = options.busSpeed != 0 ? options.busSpeed : I2cTransferOptions().busSpeed;
    const uint32_t timeout = std::max(1U, options.timeoutFactor * 400U / busSpeed); // in the kernel's 10 ms
    return ioctl(I2C_TIMEOUT, static_cast<int>(timeout)) < 0 ? failed : 0;
}

StorageResult LinuxI2cBus::transfer(std::span<i2c_msg> messages)
{
    i2c_rdwr_ioctl_data request{messages.data(), static_cast<uint32_t>(messages.size())};
    if (ioctl(I2C_RDWR, static_cast<void *>(&request)) >= 0)
        return 0;
    switch (errno) {
    case ETIMEDOUT: return timedOut;
    case EIO: return notAcknowledged;
    default: return failed;
    }
}
