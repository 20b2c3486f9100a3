#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

class IoctlDevice;
struct _UMockdevIoctlBase; // NOLINT(bugprone-reserved-identifier): umockdev's name
struct _UMockdevTestbed;   // NOLINT(bugprone-reserved-identifier): umockdev's name

/// A tree of device files that takes the place of "/dev" and "/sys" for a program started with the preload library
/// and this tree as UMOCKDEV_DIR. Paths are the program's ("/dev/fb0"). This process itself sees the machine's own
/// files and needs no preload. After a failure errorString() says what was wrong first, and the rest does nothing.
class DeviceFiles
{
public:
    static constexpr const char *preloadLibrary = "libumockdev-preload.so.0";

    DeviceFiles();
    /// Removes the tree. A program that still runs in it loses its devices: its next request ends it.
    ~DeviceFiles();
    DeviceFiles(const DeviceFiles &) = delete;
    DeviceFiles &operator=(const DeviceFiles &) = delete;

    QString errorString() const { return m_error; }
    QString root() const { return m_root; }

    /// Notes what the tree lacks; the first note stays.
    void fail(const QString &error);

    /// @return where the file lies for this process; empty after a failure.
    QString addFile(const QString &path, const QByteArray &contents = "\n");
    /// For the user alone.
    void addFolder(const QString &path);
    /// The device file leads to a terminal or file of the machine.
    void addLink(const QString &path, const QString &target);
    /// Sees to it that the program does not get the machine's own device of this path.
    void withhold(const QString &path);
    /// Lets an object answer the ioctl requests on a device file. It is borrowed and outlives the tree.
    void attach(const QString &path, IoctlDevice *device);

private:
    QString place(const QString &path);

    QString m_error;
    QString m_root;
    _UMockdevTestbed *m_testbed = nullptr;
    std::vector<_UMockdevIoctlBase *> m_handlers;
};
