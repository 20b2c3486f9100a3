#include "ui/screeneditor.h"

#include "protocol/dt3manager.h"
#include "protocol/dt3property.h"
#include "ui/dataline.h"

void ScreenEditor::bindProperty(Dt3Property *property)
{
    Q_ASSERT(property); // a row that opens an editor has one
    m_property = property;
}

void ScreenEditor::openedFrom(const DataLine &row) { bindProperty(row.property()); }

bool ScreenEditor::isEdited(const QString &path) const { return path == m_property->path(); }

QString ScreenEditor::node() const { return Dt3Manager::nodeOf(m_property->path()); }

void ScreenEditor::fetch() { get(m_property->path()); }

void ScreenEditor::write(const QString &caption) { setValue(*m_property, caption); }
