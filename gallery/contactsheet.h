#pragma once

#include <QDir>
#include <QImage>
#include <QStringList>

/// The pictures of a walk: each a file, all of them on one sheet, and a page that shows them by place.
class ContactSheet
{
public:
    /// @param folder is made where it is not there.
    explicit ContactSheet(const QString &folder);

    /// @param place the captions that lead to the page.
    /// @param fileName a second one of this name gets a number.
    void add(const QString &fileName, const QStringList &place, const QImage &picture);
    /// Writes contact-sheet.png and ../gallery.md. @param subject what was walked. @return what went wrong, in words.
    QStringList finish(const QString &subject);

private:
    struct Picture
    {
        QString wanted, fileName;
        QStringList place;
        QImage image;
    };

    void save(const QImage &image, const QString &fileName);
    void writeSheet();
    void writePage(const QString &subject);

    QDir m_folder;
    QList<Picture> m_pictures;
    QStringList m_faults;
};
