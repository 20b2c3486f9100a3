#include "tests/ui/lcd.h"

#include "ui/dataline.h"
#include "ui/fonts.h"
#include "ui/stylesheet.h"

#include <QApplication>
#include <QTest>

void prepareLcdLooks()
{
    static const bool prepared = [] {
        blackenBackground();
        loadFonts(QStringLiteral(FONT_FOLDER));
        return true;
    }();
    Q_UNUSED(prepared)
}

Lcd::Lcd()
{
    prepareLcdLooks();
    resize(320, 240);
    show();
    if (!QTest::qWaitForWindowActive(this))
        qFatal("the window does not become active");
}

void Lcd::keys(const char *keys)
{
    for (const char *key = keys; *key; ++key) {
        const int code = *key == '\r' ? int{Qt::Key_Return} : *key == '\x1b' ? int{Qt::Key_Escape} : *key;
        QTest::keyClick(QApplication::focusWidget(), Qt::Key(code));
    }
}

QString Lcd::title() { return QApplication::focusWidget()->findChild<StyledLabel *>()->text(); }

QString Lcd::texts()
{
    QStringList texts;
    for (const QLabel *label : QApplication::focusWidget()->findChildren<QLabel *>()) {
        if (label->isVisible() && label->text() < QString(QChar(0xE000)))
            texts += label->text();
    }
    return texts.join('|');
}

QStringList Lcd::rows()
{
    QStringList rows;
    for (const DataLine *row : QApplication::focusWidget()->findChildren<DataLine *>()) {
        QStringList values;
        for (int i = 0; i < row->valueLayout()->count(); ++i) {
            const auto *label = qobject_cast<QLabel *>(row->valueLayout()->itemAt(i)->widget());
            if (label && label->isVisible())
                values += label->text();
        }
        const QString caption = row->captionLabel()->text();
        if (row->captionLabel()->isVisible())
            rows += values.isEmpty() ? caption : caption + ": " + values.join(' ');
    }
    return rows;
}
