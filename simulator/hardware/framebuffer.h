#pragma once

#include "simulator/hardware/ioctldevice.h"

#include <QFile>
#include <QImage>

/// The LCD's framebuffer: a file that the program maps and paints into, 32 bits per pixel, and its ioctl requests.
class Framebuffer : public IoctlDevice
{
public:
    Framebuffer(int width, int height)
        : m_width(width)
        , m_height(height)
    {
    }

    /// Bytes of the file: all pixels, line by line.
    qsizetype size() const { return qsizetype(bytesPerLine()) * m_height; }
    /// Maps the file. False: see errorString().
    bool map(const QString &path);
    QString errorString() const { return m_file.errorString(); }

    /// A copy of the picture, opaque; black as long as there is no file.
    QImage picture() const;

    long ioctl(unsigned long request, ClientMemory argument) override;

private:
    int bytesPerLine() const { return m_width * 4; }

    int m_width;
    int m_height;
    QFile m_file;
    uchar *m_pixels = nullptr;
};
