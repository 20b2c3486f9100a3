// clang-format off
#include <umockdev.h> // ahead of everything: Qt's headers make "signals" a macro
// clang-format on

#include "simulator/hardware/devicefiles.h"

#include "simulator/hardware/ioctldevice.h"
#include "simulator/hardware/programhangup.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <dlfcn.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

gboolean answer(UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer device)
{
    const long result = static_cast<IoctlDevice *>(device)->ioctl(
        umockdev_ioctl_client_get_request(client), ClientMemory(umockdev_ioctl_client_get_arg(client)));
    umockdev_ioctl_client_complete(client, result < 0 ? -1 : result, result < 0 ? int(-result) : 0);
    return TRUE;
}

void noticeOpen(UMockdevIoctlBase *, UMockdevIoctlClient *, gpointer device)
{
    static_cast<IoctlDevice *>(device)->opened();
}

bool canPreload()
{
    void *library = dlopen(DeviceFiles::preloadLibrary, RTLD_LAZY | RTLD_LOCAL);
    if (library)
        dlclose(library);
    return library != nullptr;
}

/// Requests travel through sockets in the tree, whose paths have a limit of their own.
constexpr size_t longestFolder = sizeof(sockaddr_un::sun_path) - sizeof "/umockdev.XXXXXX/ioctl/dev/input/event0";

/// What umockdev would end the process for, or not notice; empty if nothing is in the way.
QString obstacle()
{
    const QByteArray folder = g_get_tmp_dir(); // GLib looks at TMPDIR once only
    if (!canPreload())
        return QStringLiteral("The library %1 is missing. Install the package umockdev: apt-get install umockdev")
            .arg(QLatin1String(DeviceFiles::preloadLibrary));
    if (access(folder.constData(), W_OK | X_OK) < 0)
        return QStringLiteral("Cannot write to %1. Start with TMPDIR set to another folder")
            .arg(QFile::decodeName(folder));
    if (size_t(folder.size()) > longestFolder)
        return QStringLiteral("The path %1 is too long. Start with TMPDIR set to a shorter one")
            .arg(QFile::decodeName(folder));
    return {};
}

} // namespace

DeviceFiles::DeviceFiles()
    : m_error(obstacle())
{
    if (!m_error.isEmpty())
        return;
    m_testbed = umockdev_testbed_new();
    g_autofree char *root = umockdev_testbed_get_root_dir(m_testbed);
    m_root = QFile::decodeName(root);
}

DeviceFiles::~DeviceFiles()
{
    if (!m_testbed)
        return;
    hangUpPrograms(m_root);
    g_object_unref(m_testbed); // ends its thread: from here on nobody calls an IoctlDevice
    for (UMockdevIoctlBase *handler : m_handlers)
        g_object_unref(handler);
}

QString DeviceFiles::place(const QString &path)
{
    addFolder(QFileInfo(path).path());
    return m_root + path;
}

void DeviceFiles::addFolder(const QString &path)
{
    const QString folder = m_root + path;
    if (m_error.isEmpty()
        && !(QDir().mkpath(folder)
            && QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)))
        fail(QStringLiteral("Cannot make the folder %1").arg(folder));
}

QString DeviceFiles::addFile(const QString &path, const QByteArray &contents)
{
    if (!m_error.isEmpty())
        return {};
    QFile file(place(path));
    if (file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size() && file.flush())
        return file.fileName();
    fail(QStringLiteral("Cannot write %1: %2").arg(file.fileName(), file.errorString()));
    return {};
}

void DeviceFiles::addLink(const QString &path, const QString &target)
{
    if (m_error.isEmpty() && !QFile::link(target, place(path)))
        fail(QStringLiteral("Cannot link %1 to \"%2\"").arg(path, target));
}

void DeviceFiles::withhold(const QString &path)
{
    // A path that the tree lacks is looked up on the machine. A socket cannot be opened, not even by root.
    if (!m_error.isEmpty() || !QFileInfo::exists(path))
        return;
    if (mknod(QFile::encodeName(place(path)).constData(), S_IFSOCK | S_IRUSR | S_IWUSR, 0) < 0)
        fail(QStringLiteral("Cannot hide %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno))));
}

void DeviceFiles::attach(const QString &path, IoctlDevice *device)
{
    if (!m_error.isEmpty())
        return;
    UMockdevIoctlBase *handler = umockdev_ioctl_base_new();
    m_handlers.push_back(handler);
    g_signal_connect(handler, "handle-ioctl", G_CALLBACK(answer), device);
    g_signal_connect(handler, "client-connected", G_CALLBACK(noticeOpen), device);
    g_autoptr(GError) error = nullptr;
    if (!umockdev_testbed_attach_ioctl(m_testbed, path.toUtf8().constData(), handler, &error))
        fail(QStringLiteral("Cannot answer for %1: %2").arg(path, QString::fromUtf8(error ? error->message : "")));
}

void DeviceFiles::fail(const QString &error)
{
    if (m_error.isEmpty())
        m_error = error;
}
