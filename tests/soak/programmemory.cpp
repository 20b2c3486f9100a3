#include "tests/soak/programmemory.h"

#include <QFile>

#include <cstdio>

double programMemory(const Device &device)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(device.programProcessId()));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return QString::fromLatin1(status.readAll()).section("VmRSS:", 1).section("kB", 0, 0).toDouble();
}

double MemoryRun::slope(double from) const
{
    double count = 0, x = 0, y = 0, xx = 0, xy = 0;
    for (const Note &note : m_notes) {
        if (note.at < from)
            continue;
        count += 1;
        x += note.at;
        y += note.kib;
        xx += note.at * note.at;
        xy += note.at * note.kib;
    }
    const double spread = count * xx - x * x;
    return spread > 0 ? (count * xy - x * y) / spread : 0;
}

void MemoryRun::print(const char *unit, size_t count) const
{
    std::printf("resident:");
    for (size_t i = 0; i < count && !m_notes.empty(); ++i) {
        const Note &note = m_notes[i * (m_notes.size() - 1) / (count - 1)];
        std::printf(" %.0f KiB at %s %.4g%s", note.kib, unit, note.at, i + 1 < count ? "," : "");
    }
    std::printf("\n");
}
