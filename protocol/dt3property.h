#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// One property of the device: where it lives, how its raw values read on the LCD, how it is written.
///
/// A path in two parts has the port of the moment between them ("/MEDIA/PORTS/VIDEO" + "/I3" + "/STATUS.SignalType").
/// setPath() and setPort() also enter the descriptor in the registry that turns captions into raw values by
/// path; the last one to take a path owns its entry. A copy is not entered until it is given a path or port itself.
/// A descriptor that is destroyed takes its own entry with it.
class Dt3Property
{
public:
    Dt3Property() = default;
    Dt3Property(const Dt3Property &other);
    Dt3Property &operator=(const Dt3Property &other);
    ~Dt3Property();

    void setPath(const QString &path);
    void setPath(const QString &prefix, const QString &suffix);
    /// A separate target for SET, and a method to CALL instead of a SET; parts as with setPath().
    void setWritePath(const QString &path) { m_writePathParts = {path}; }
    void setWritePath(const QString &prefix, const QString &suffix) { m_writePathParts = {prefix, suffix}; }
    void setMethodPath(const QString &path) { m_methodPathParts = {path}; }
    void setMethodPath(const QString &prefix, const QString &suffix) { m_methodPathParts = {prefix, suffix}; }

    /// @param pinned 0: the descriptor follows the port of the screen that shows it; else it keeps this one.
    void setPort(const QString &port, int pinned);
    int pinned() const { return m_pinned; }

    bool hasPath() const { return !m_pathParts.isEmpty(); }
    bool hasWritePath() const { return !m_writePathParts.isEmpty(); }
    bool hasMethodPath() const { return !m_methodPathParts.isEmpty(); }
    const QString &path() const { return m_path; }
    QString writePath() const { return m_writePathParts.join(m_port); }
    QString methodPath() const { return m_methodPathParts.join(m_port); }

    void addMapping(const QString &raw, const QString &caption);
    /// A value that is its own caption.
    void addValue(const QString &value) { addMapping(value, value); }
    /// In the order they were added, which is the order a list offers them in.
    QStringList captions() const;
    /// What has no mapping comes back as it is.
    QString rawValue(const QString &caption) const;
    QString caption(const QString &raw) const;

    /// rawValue() of the registered descriptor with this path; the caption itself where there is none.
    static QString rawValueFor(const QString &path, const QString &caption);
    static QString captionFor(const QString &path, const QString &raw);

private:
    struct Mapping
    {
        QString raw, caption;
    };

    void relocate(const QStringList &pathParts, const QString &port);
    void leaveRegistry();

    QStringList m_pathParts, m_writePathParts, m_methodPathParts;
    QString m_port;
    QString m_path; ///< The path parts joined with the port, as path() gives it on every change line.
    int m_pinned = 0;
    QList<Mapping> m_mappings;
};
