#include "machine.h"

#include <QDir>
#include <QFile>

#include <cstring>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

namespace {

constexpr const char *devices = "P: /devices/i2c-0\nN: i2c-0\nE: SUBSYSTEM=i2c-dev\nE: DEVNAME=/dev/i2c-0\n\n"
                                "P: /devices/fb1\nN: fb1\nE: SUBSYSTEM=graphics\nE: DEVNAME=/dev/fb1\n";

/// A copy of the @p index-th T of the data.
template <typename T> T valueIn(const UMockdevIoctlData *data, size_t index = 0)
{
    T value{};
    std::memcpy(&value, data->data + index * sizeof(T), sizeof(T));
    return value;
}

} // namespace

Machine::Machine()
    : functionality(I2C_FUNC_I2C)
{
    umockdev_testbed_add_from_string(m_testbed.get(), devices, nullptr);
    g_signal_connect(m_handler.get(), "handle-ioctl", G_CALLBACK(&Machine::handle), this);
    for (const char *node : {"/dev/i2c-0", "/dev/fb1"})
        umockdev_testbed_attach_ioctl(m_testbed.get(), node, m_handler.get(), nullptr);
}

QString Machine::path(const char *file) const
{
    gchar *root = umockdev_testbed_get_root_dir(m_testbed.get());
    QString result = QFile::decodeName(root) + file;
    g_free(root);
    return result;
}

void Machine::unplug(const char *node) { QFile::remove(path(node)); }

void Machine::setSocId(const QByteArray &text)
{
    QDir().mkpath(path("/sys/bus/soc/devices/soc0"));
    QFile file(path("/sys/bus/soc/devices/soc0/soc_id"));
    if (file.open(QIODevice::WriteOnly))
        file.write(text);
}

gboolean Machine::handle(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self)
{
    auto *machine = static_cast<Machine *>(self);
    const unsigned long request = umockdev_ioctl_client_get_request(client);
    const auto error = machine->errors.find(request);
    machine->requests += machine->answer(request, umockdev_ioctl_client_get_arg(client));
    if (error != machine->errors.end())
        umockdev_ioctl_client_complete(client, -1, error->second);
    else
        umockdev_ioctl_client_complete(client, 0, 0);
    return true;
}

QString Machine::answer(unsigned long request, UMockdevIoctlData *argument)
{
    switch (request) {
    case I2C_FUNCS: {
        const Data data = resolve(argument, 0, sizeof functionality);
        umockdev_ioctl_data_update(data.get(), 0, reinterpret_cast<guint8 *>(&functionality), sizeof functionality);
        return "funcs";
    }
    case I2C_TIMEOUT: return QString("timeout %1").arg(valueIn<unsigned long>(argument));
    case I2C_RDWR: return transfer(argument);
    case 0x40084621: {
        const Data alpha = resolve(argument, 0, 8);
        return QString("alpha %1 %2").arg(valueIn<int32_t>(alpha.get())).arg(valueIn<int32_t>(alpha.get(), 1));
    }
    default: return QString("unknown %1").arg(request, 0, 16);
    }
}

QString Machine::transfer(UMockdevIoctlData *argument)
{
    const Data request = resolve(argument, 0, sizeof(i2c_rdwr_ioctl_data));
    const auto count = valueIn<i2c_rdwr_ioctl_data>(request.get()).nmsgs;
    const Data messages = resolve(request.get(), offsetof(i2c_rdwr_ioctl_data, msgs), count * sizeof(i2c_msg));
    QStringList texts;
    for (size_t i = 0; i < count; ++i) {
        const auto message = valueIn<i2c_msg>(messages.get(), i);
        const bool reading = message.flags & I2C_M_RD;
        QByteArray bytes;
        if (message.len > 0) {
            const Data buffer = resolve(messages.get(), i * sizeof(i2c_msg) + offsetof(i2c_msg, buf), message.len);
            bytes = QByteArray(reinterpret_cast<const char *>(buffer->data), message.len);
            if (reading) {
                bytes = eeprom.mid(m_position, message.len);
                umockdev_ioctl_data_update(
                    buffer.get(), 0, reinterpret_cast<guint8 *>(bytes.data()), static_cast<gint>(bytes.size()));
            } else if (message.flags & I2C_M_NOSTART) {
                eeprom.replace(m_position, bytes.size(), bytes);
            } else if (bytes.size() >= 2) {
                m_position = static_cast<uint8_t>(bytes[0]) << 8 | static_cast<uint8_t>(bytes[1]);
                eeprom.replace(m_position, bytes.size() - 2, bytes.mid(2));
            }
        }
        const QString text
            = QString::asprintf("%s%c%02x", message.flags & I2C_M_NOSTART ? "+" : "", reading ? 'r' : 'w', message.addr)
            + (reading ? QString("+%1").arg(message.len) : ' ' + bytes.toHex());
        texts += message.flags & I2C_M_STOP ? text + '.' : text;
    }
    return texts.join(", ");
}

Machine::Data Machine::resolve(UMockdevIoctlData *data, size_t offset, size_t len)
{
    return Data(umockdev_ioctl_data_resolve(data, offset, len, nullptr));
}
