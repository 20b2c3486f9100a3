#include "protocol/dt3property.h"

#include <algorithm>
#include <map>

namespace {

/// By current path. Never destroyed: descriptors of static life leave it as late as they like.
std::map<QString, Dt3Property *> &propertyRegistry()
{
    static auto &registry = *new std::map<QString, Dt3Property *>;
    return registry;
}

const Dt3Property *registeredAt(const QString &path)
{
    const auto found = propertyRegistry().find(path);
    return found == propertyRegistry().end() ? nullptr : found->second;
}

} // namespace

Dt3Property::Dt3Property(const Dt3Property &other)
    : m_pathParts(other.m_pathParts)
    , m_writePathParts(other.m_writePathParts)
    , m_methodPathParts(other.m_methodPathParts)
    , m_port(other.m_port)
    , m_path(other.m_path)
    , m_pinned(other.m_pinned)
    , m_mappings(other.m_mappings)
{
}

Dt3Property &Dt3Property::operator=(const Dt3Property &other)
{
    if (this == &other)
        return *this;
    leaveRegistry();
    m_pathParts = other.m_pathParts;
    m_writePathParts = other.m_writePathParts;
    m_methodPathParts = other.m_methodPathParts;
    m_port = other.m_port;
    m_path = other.m_path;
    m_pinned = other.m_pinned;
    m_mappings = other.m_mappings;
    return *this;
}

Dt3Property::~Dt3Property() { leaveRegistry(); }

/// Takes out the entry that points here; one that another descriptor has taken over stays.
void Dt3Property::leaveRegistry()
{
    const auto entry = propertyRegistry().find(m_path);
    if (entry != propertyRegistry().end() && entry->second == this)
        propertyRegistry().erase(entry);
}

void Dt3Property::relocate(const QStringList &pathParts, const QString &port)
{
    propertyRegistry().erase(m_path); // whosever it is: the path is given up by the one that moves
    m_pathParts = pathParts;
    m_port = port;
    m_path = m_pathParts.join(m_port);
    propertyRegistry()[m_path] = this;
}

void Dt3Property::setPath(const QString &path) { relocate({path}, m_port); }

void Dt3Property::setPath(const QString &prefix, const QString &suffix) { relocate({prefix, suffix}, m_port); }

void Dt3Property::setPort(const QString &port, int pinned)
{
    m_pinned = pinned;
    relocate(m_pathParts, port);
}

void Dt3Property::addMapping(const QString &raw, const QString &caption) { m_mappings.append({raw, caption}); }

QStringList Dt3Property::captions() const
{
    QStringList captions;
    for (const Mapping &mapping : m_mappings)
        captions.append(mapping.caption);
    return captions;
}

// Searched from the end: of two mappings with the same key the later one counts.
QString Dt3Property::rawValue(const QString &caption) const
{
    const auto found = std::find_if(
        m_mappings.rbegin(), m_mappings.rend(), [&caption](const Mapping &m) { return m.caption == caption; });
    return found == m_mappings.rend() ? caption : found->raw;
}

QString Dt3Property::caption(const QString &raw) const
{
    const auto found
        = std::find_if(m_mappings.rbegin(), m_mappings.rend(), [&raw](const Mapping &m) { return m.raw == raw; });
    return found == m_mappings.rend() ? raw : found->caption;
}

QString Dt3Property::rawValueFor(const QString &path, const QString &caption)
{
    const Dt3Property *property = registeredAt(path);
    return property ? property->rawValue(caption) : caption;
}

QString Dt3Property::captionFor(const QString &path, const QString &raw)
{
    const Dt3Property *property = registeredAt(path);
    return property ? property->caption(raw) : raw;
}
