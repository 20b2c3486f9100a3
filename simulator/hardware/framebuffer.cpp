#include "simulator/hardware/framebuffer.h"

#include <cerrno>
#include <cstring>
#include <linux/fb.h>

bool Framebuffer::map(const QString &path)
{
    m_file.setFileName(path);
    if (m_file.open(QIODevice::ReadWrite))
        m_pixels = m_file.map(0, size());
    return m_pixels != nullptr;
}

QImage Framebuffer::picture() const
{
    QImage copy(m_width, m_height, QImage::Format_RGB32);
    copy.fill(Qt::black);
    if (!m_pixels)
        return copy;
    for (int y = 0; y < m_height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(copy.scanLine(y));
        std::memcpy(line, m_pixels + qsizetype(y) * bytesPerLine(), size_t(bytesPerLine()));
        for (int x = 0; x < m_width; ++x)
            line[x] |= 0xff000000; // the LCD ignores the alpha byte
    }
    return copy;
}

long Framebuffer::ioctl(unsigned long request, ClientMemory argument)
{
    switch (request) {
    case FBIOGET_FSCREENINFO: {
        auto *info = argument.target<fb_fix_screeninfo>();
        if (!info)
            return -EFAULT;
        *info = {};
        std::strcpy(info->id, "LCD");
        info->smem_len = uint32_t(size());
        info->type = FB_TYPE_PACKED_PIXELS;
        info->visual = FB_VISUAL_TRUECOLOR;
        info->line_length = uint32_t(bytesPerLine());
        return 0;
    }
    case FBIOGET_VSCREENINFO: {
        auto *info = argument.target<fb_var_screeninfo>();
        if (!info)
            return -EFAULT;
        *info = {};
        info->xres = info->xres_virtual = uint32_t(m_width);
        info->yres = info->yres_virtual = uint32_t(m_height);
        info->bits_per_pixel = 32;
        info->red = {16, 8, 0};
        info->green = {8, 8, 0};
        info->blue = {0, 8, 0};
        info->transp = {24, 8, 0};
        info->width = 65; // mm
        info->height = 49;
        return 0;
    }
    case FBIOPUT_VSCREENINFO:
    case FBIOPAN_DISPLAY:
    case FBIOBLANK: return 0;
    default: return -EINVAL;
    }
}
