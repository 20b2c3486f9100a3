#include "tests/ui/lcd.h"

#include "ui/fonts.h"

#include <QApplication>
#include <QTest>

void prepareLcdLooks()
{
    static const bool prepared = [] {
        qApp->setStyleSheet(QStringLiteral("*{ background-color: black}")); // as the program does
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
