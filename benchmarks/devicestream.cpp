#include "benchmarks/devicestream.h"

#include <cstdio>

namespace {

constexpr int ports = 48;
constexpr int nodeCount = 200;
constexpr int rounds = 20;

// Three properties of every node change in turn, with values as long as the real ones.
constexpr const char *changes[]
    = {".SignalType=HDMI", ".ActiveResolution=1920x1080p60.00Hz", ".PixelClock=148.500 MHz", ".SignalPresent=true"};

} // namespace

DeviceStream::DeviceStream()
{
    for (int port = 1; port <= ports; ++port) {
        for (const char *pattern : {"/MEDIA/PORTS/VIDEO/I%1/STATUS", "/MEDIA/PORTS/VIDEO/O%1/STATUS",
                 "/MEDIA/PORTS/VIDEO/I%1/EMBEDDEDAUDIO", "/MEDIA/PORTS/VIDEO/O%1/EMBEDDEDAUDIO"})
            m_nodes.append(QString::fromLatin1(pattern).arg(port));
    }
    for (const char *node : {"/MEDIA/XP/VIDEO", "/MEDIA/PRESET", "/SYS/CECU/LCD", "/SYS/CECU/HEALTH",
             "/SYS/HSMB/HEALTH", "/MANAGEMENT/POWER", "/MANAGEMENT/DATETIME", "/MANAGEMENT/BOOTLOADER"})
        m_nodes.append(QString::fromLatin1(node));
    Q_ASSERT(m_nodes.size() == nodeCount);

    for (int round = 0; round < rounds; ++round) {
        for (int node = 0; node < nodeCount; ++node) {
            addChange(node, round);
            if (node % 20 == 0)
                addBlock(1 + (round + node) % ports);
        }
        QByteArray status = "CHG /MEDIA/XP/VIDEO.DestinationConnectionStatus=";
        for (int port = 1; port <= ports; ++port)
            status += 'I' + QByteArray::number(1 + (port + round) % ports) + ';';
        addLine(status);
        ++m_changeCount;
    }
}

void DeviceStream::addLine(const QByteArray &line)
{
    m_bytes += line + "\r\n";
    ++m_lineCount;
}

void DeviceStream::addChange(int node, int round)
{
    addLine("CHG " + m_nodes[node].toUtf8() + changes[(node + round) % std::size(changes)]);
    ++m_changeCount;
}

void DeviceStream::addBlock(int port)
{
    m_signatures.append(m_bytes.size() + 1);
    addLine("{0000");
    const QByteArray node = "/MEDIA/PORTS/VIDEO/I" + QByteArray::number(port) + "/SETTINGS";
    addLine("pr " + node + ".Conversion=OFF");
    addLine("pw " + node + ".HdcpVersion=2");
    addLine("pw " + node + ".EnableHPD=AUTO");
    addLine("pw " + node + ".Name=Camera \\#" + QByteArray::number(port) + " \\(left\\)");
    addLine("}");
}

void DeviceStream::renumber(int firstSignature)
{
    char digits[8];
    for (const qsizetype place : std::as_const(m_signatures)) {
        std::snprintf(digits, sizeof digits, "%04d", firstSignature++ % 10000);
        m_bytes.replace(place, 4, digits, 4);
    }
}
