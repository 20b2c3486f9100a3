#include "simulator/hardware/programenvironment.h"

#include "simulator/hardware/devicefiles.h"

#include <QStringList>

namespace {

/// To the options of a sanitizer; of two that differ the last one counts.
void append(QProcessEnvironment *environment, const QString &name, const QString &option)
{
    const QString before = environment->value(name);
    environment->insert(name, before.isEmpty() ? option : before + u':' + option);
}

} // namespace

QProcessEnvironment makeProgramEnvironment(const DeviceFiles &files)
{
    static constexpr struct
    {
        const char *name, *value;
    } fixed[] = {
        // clang-format off
        {"QT_QPA_PLATFORM",        "linuxfb:fb=/dev/fb0:nographicsmodeswitch"},
        {"QT_QPA_FB_DISABLE_INPUT", "1"},
        {"QT_QPA_FB_HIDECURSOR",    "1"},
        {"QT_QPA_GENERIC_PLUGINS", "evdevkeyboard:/dev/input/event1"},
        // clang-format on
    };
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const auto &variable : fixed)
        environment.insert(QLatin1String(variable.name), QLatin1String(variable.value));
    environment.insert(QStringLiteral("UMOCKDEV_DIR"), files.root());
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), files.root() + QLatin1String(runtimeFolder));

    // What is preloaded into the program anyway sees its calls before the test bed turns them aside.
    QStringList preload{environment.value(QStringLiteral("LD_PRELOAD")), QLatin1String(DeviceFiles::preloadLibrary)};
#ifdef __SANITIZE_ADDRESS__
    // the program is built as we are, and GCC's sanitizer has to come first
    preload.prepend(QStringLiteral("libasan.so.8"));
#endif
    environment.insert(QStringLiteral("LD_PRELOAD"), preload.join(u' ').trimmed());
    // Qt has no frame pointers: only the slow walk tells whose a leak is. What is suppressed is no message.
    append(&environment, QStringLiteral("ASAN_OPTIONS"), QStringLiteral("fast_unwind_on_malloc=0"));
    append(&environment, QStringLiteral("LSAN_OPTIONS"), QStringLiteral("print_suppressions=0"));
    return environment;
}
