#pragma once

// clang-format off
#include <umockdev.h> // before Qt: its headers use "signals" as a name
// clang-format on

#include <QByteArray>
#include <QStringList>

#include <future>
#include <map>
#include <memory>

/// The machine around the hardware classes: "/dev/i2c-0" with an EEPROM of two address bytes at 0x57, "/dev/fb1",
/// and a processor that says what it is. The process must be linked with umockdev's preload library.
/// Whatever takes part in requests runs through served().
class Machine
{
public:
    /// One entry per request: "funcs", "timeout 1", "alpha 0 0", and for a transfer its messages, as in
    /// "w57 0080, r57+128". A message without start begins with '+', one with a stop of its own ends with '.'.
    QStringList requests;
    unsigned long functionality;
    std::map<unsigned long, int> errors; ///< By request number: the errno it fails with.
    QByteArray eeprom = QByteArray(65536, '\xff');

    Machine();
    void unplug(const char *node);
    void setSocId(const QByteArray &text);

    /// The result of @p call, made in another thread while this one plays the machine.
    template <typename Call> static auto served(Call call)
    {
        auto result = std::async(std::launch::async, [&call] {
            const auto value = call();
            g_main_context_wakeup(nullptr);
            return value;
        });
        while (result.wait_for(std::chrono::seconds(0)) != std::future_status::ready)
            g_main_context_iteration(nullptr, false);
        return result.get();
    }

private:
    struct Unref
    {
        void operator()(gpointer object) const { g_object_unref(object); }
    };
    template <typename T> using Pointer = std::unique_ptr<T, Unref>;
    using Data = Pointer<UMockdevIoctlData>;

    QString path(const char *file) const;
    static gboolean handle(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer self);
    static Data resolve(UMockdevIoctlData *data, size_t offset, size_t len);
    QString answer(unsigned long request, UMockdevIoctlData *argument);
    QString transfer(UMockdevIoctlData *argument);

    Pointer<UMockdevTestbed> m_testbed{umockdev_testbed_new()};
    Pointer<UMockdevIoctlBase> m_handler{umockdev_ioctl_base_new()};
    qsizetype m_position = 0; ///< What the EEPROM reads or stores next.
};
