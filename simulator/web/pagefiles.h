#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

/// The files of the page, all that is embedded and nothing else.
class PageFiles
{
public:
    struct File
    {
        QByteArray type; ///< MIME type.
        QByteArray contents;
    };

    PageFiles();

    /// The file of a request's path ("/front.js"; "/" stands for "/index.html"), or null.
    const File *find(const QString &path) const;

private:
    QHash<QString, File> m_files;
};
