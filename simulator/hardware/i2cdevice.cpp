#include "simulator/hardware/i2cdevice.h"

#include <cerrno>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

namespace {

constexpr uint16_t eepromAddress = 0x57;

} // namespace

long I2cDevice::ioctl(unsigned long request, ClientMemory argument)
{
    switch (request) {
    case I2C_FUNCS: {
        auto *functionality = argument.target<unsigned long>();
        if (!functionality)
            return -EFAULT;
        *functionality = I2C_FUNC_I2C | I2C_FUNC_SMBUS_EMUL;
        return 0;
    }
    case I2C_TIMEOUT: return 0;
    case I2C_RDWR: return transfer(argument);
    default: return -ENOTTY;
    }
}

long I2cDevice::transfer(ClientMemory argument)
{
    const ClientMemory header = argument.follow(0, sizeof(i2c_rdwr_ioctl_data));
    const auto *work = argument.target<i2c_rdwr_ioctl_data>();
    if (!work)
        return -EFAULT;
    const uint32_t count = work->nmsgs;
    if (count > I2C_RDWR_IOCTL_MAX_MSGS)
        return -EINVAL;
    const ClientMemory list = header.follow(offsetof(i2c_rdwr_ioctl_data, msgs), count * sizeof(i2c_msg));
    const auto *messages = reinterpret_cast<const i2c_msg *>(list.bytes().data());
    for (uint32_t i = 0; i < count; ++i) {
        if (!messages)
            return -EFAULT;
        const i2c_msg &message = messages[i];
        if ((message.flags & ~I2C_M_RD) != 0)
            return -EOPNOTSUPP; // I2C_FUNCS does not offer more
        if (m_fault != 0)
            return -m_fault;
        if (message.addr != eepromAddress)
            return -EIO; // nobody acknowledges
        const ClientMemory buffer = list.follow(i * sizeof(i2c_msg) + offsetof(i2c_msg, buf), message.len);
        if (buffer.bytes().size() != message.len)
            return -EFAULT;
        if ((message.flags & I2C_M_RD) != 0)
            m_eeprom.read(buffer.bytes());
        else
            m_eeprom.write(buffer.bytes());
    }
    return count;
}
