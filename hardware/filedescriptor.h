#pragma once

/// Owner of one file descriptor; closes it on destruction.
/// Functions that can fail return -1 and leave the reason in errno; nothing throws.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    virtual ~FileDescriptor();

    /// 0, also when nothing is open; -1 if the system refused, and the descriptor is kept.
    virtual int close();

    bool isOpen() const { return m_fd >= 0; }

    /// From now on reads and writes that would wait fail with EAGAIN. 0, or -1.
    int setNonBlocking();

protected:
    int m_fd = -1;
};
