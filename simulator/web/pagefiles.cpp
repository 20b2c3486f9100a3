#include "simulator/web/pagefiles.h"

#include <QDirIterator>

namespace {

constexpr struct
{
    const char *suffix, *type;
} types[] = {
    {"html", "text/html; charset=utf-8"},
    {"js", "text/javascript; charset=utf-8"},
    {"css", "text/css; charset=utf-8"},
};

QByteArray typeOf(const QString &suffix)
{
    for (const auto &row : types) {
        if (suffix == QLatin1String(row.suffix))
            return row.type;
    }
    return "application/octet-stream";
}

} // namespace

PageFiles::PageFiles()
{
    const QString folder = QStringLiteral(":/page");
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly))
            m_files.insert(file.fileName().mid(folder.size()), {typeOf(files.fileInfo().suffix()), file.readAll()});
    }
}

const PageFiles::File *PageFiles::find(const QString &path) const
{
    const auto file = m_files.constFind(path == "/" ? QStringLiteral("/index.html") : path);
    return file == m_files.constEnd() ? nullptr : &*file;
}
