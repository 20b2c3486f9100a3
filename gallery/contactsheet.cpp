#include "gallery/contactsheet.h"

#include <QFile>
#include <QPainter>
#include <QTextStream>

#include <algorithm>

namespace {

constexpr int columns = 8;
constexpr int gap = 6; // pixels
constexpr QSize thumbnail(160, 120);

} // namespace

ContactSheet::ContactSheet(const QString &folder)
    : m_folder(folder)
{
    if (!folder.isEmpty() && !m_folder.mkpath(QStringLiteral(".")))
        m_faults.append(QStringLiteral("%1 cannot be made").arg(folder));
}

void ContactSheet::add(const QString &fileName, const QStringList &place, const QImage &picture)
{
    const auto count = std::count_if(
        m_pictures.begin(), m_pictures.end(), [&fileName](const Picture &other) { return other.wanted == fileName; });
    QString name = fileName;
    if (count > 0)
        name.insert(name.lastIndexOf('.'), QStringLiteral("-%1").arg(count + 1));
    save(picture, name);
    m_pictures.append({fileName, name, place, picture});
}

QStringList ContactSheet::finish(const QString &subject)
{
    writeSheet();
    writePage(subject);
    return m_faults;
}

void ContactSheet::save(const QImage &image, const QString &fileName)
{
    constexpr int smallest = 0; // of the files
    if (!image.convertToFormat(QImage::Format_RGB32).save(m_folder.filePath(fileName), "PNG", smallest))
        m_faults.append(QStringLiteral("%1 cannot be saved").arg(fileName));
}

void ContactSheet::writeSheet()
{
    const int rows = static_cast<int>((m_pictures.size() + columns - 1) / columns);
    const QSize step = thumbnail + QSize(gap, gap);
    QImage sheet(columns * step.width() + gap, rows * step.height() + gap, QImage::Format_RGB32);
    sheet.fill(QColor(0x606060));
    QPainter painter(&sheet);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (qsizetype i = 0; i < m_pictures.size(); ++i) {
        const QPoint place(
            static_cast<int>(i % columns) * step.width() + gap, static_cast<int>(i / columns) * step.height() + gap);
        painter.drawImage(QRect(place, thumbnail), m_pictures[i].image);
    }
    painter.end();
    save(sheet, QStringLiteral("contact-sheet.png"));
}

void ContactSheet::writePage(const QString &subject)
{
    QFile file(m_folder.filePath(QStringLiteral("../gallery.md")));
    if (!file.open(QIODevice::WriteOnly)) {
        m_faults.append(QStringLiteral("gallery.md cannot be written: %1").arg(file.errorString()));
        return;
    }
    const QString folder = m_folder.dirName();
    QTextStream page(&file);
    page << "# The pages of the menu\n\nWalked on " << subject
         << ". Made anew by `gallery/gallery.sh build/release`.\n\n![All pages](" << folder << "/contact-sheet.png)\n";
    QString chapter;
    for (const Picture &picture : std::as_const(m_pictures)) {
        if (const QString top = picture.place.value(0, QStringLiteral("Main Menu")); top != chapter) {
            chapter = top;
            page << "\n## " << chapter << "\n\n";
        }
        const QString title = picture.place.mid(1).join(QStringLiteral(" > "));
        page << "![" << (title.isEmpty() ? chapter : title) << "](" << folder << '/' << picture.fileName << ")\n";
    }
}
