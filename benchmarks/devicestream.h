#pragma once

#include <QByteArray>
#include <QList>
#include <QStringList>

/// What a 48 x 48 frame has to say while a routing changes under load: answer blocks of ports, status lists of
/// the crosspoint, and changes of 200 opened nodes.
class DeviceStream
{
public:
    DeviceStream();

    /// The nodes that the changes belong to.
    const QStringList &nodes() const { return m_nodes; }
    int blockCount() const { return int(m_signatures.size()); }
    int changeCount() const { return m_changeCount; }
    int lineCount() const { return m_lineCount; }
    const QByteArray &bytes() const { return m_bytes; }

    /// Numbers the answer blocks from this signature on.
    void renumber(int firstSignature);

private:
    void addLine(const QByteArray &line);
    void addChange(int node, int round);
    void addBlock(int port);

    QStringList m_nodes;
    QByteArray m_bytes;
    QList<qsizetype> m_signatures; ///< Where each block's four digits stand.
    int m_changeCount = 0;
    int m_lineCount = 0;
};
