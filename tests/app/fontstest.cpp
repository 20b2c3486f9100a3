#include <QFontDatabase>
#include <QFontInfo>
#include <QRawFont>
#include <QTest>

namespace {

constexpr const char *files[][2] = {
    {"Roboto-Bold-Ostra", "RobotoBold"},
    {"Roboto-Medium-Ostra", "RobotoMedium"},
    {"Roboto-Regular-Ostra", "RobotoRegular"},
    {"Roboto-Light-Ostra", "RobotoLight"},
    {"fontawesome-webfont", "FontAwesome"},
};

QString pathOf(const char *file) { return QStringLiteral(FONT_FOLDER "/%1.ttf").arg(QLatin1String(file)); }

QImage pixelsOf(const QRawFont &font, char32_t codePoint)
{
    const quint32 glyph = font.glyphIndexesForString(QString::fromUcs4(&codePoint, 1)).value(0);
    return glyph ? font.alphaMapForGlyph(glyph, QRawFont::PixelAntialiasing) : QImage();
}

} // namespace

/// The font files that the build leaves for the program, seen through Qt as the program sees them.
class FontsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void familiesAreTheFilesAsTheyAre();
    void iconsHaveGlyphs();
};

void FontsTest::initTestCase()
{
    // As the program does: a system font of the same name that is found later would replace ours.
    QFontDatabase::families();
    for (const auto &[file, family] : files) {
        const int id = QFontDatabase::addApplicationFont(pathOf(file));
        QCOMPARE(QFontDatabase::applicationFontFamilies(id), QStringList{QLatin1String(family)});
    }
}

void FontsTest::familiesAreTheFilesAsTheyAre()
{
    for (const auto &[name, family] : files) {
        QFont font(family);
        font.setPixelSize(40);
        QVERIFY2(QFontInfo(font).exactMatch(), family);
        QCOMPARE(QFontInfo(font).weight(), int(QFont::Normal));
        // A synthesised weight would show in the pixels, and so would another font of that name.
        const QRawFont drawn = QRawFont::fromFont(font), file(pathOf(name), 40, font.hintingPreference());
        QCOMPARE(drawn.familyName(), family);
        QCOMPARE(drawn.fontTable("head"), file.fontTable("head"));
        const char32_t sample = QLatin1String(family) == QLatin1String("FontAwesome") ? U'\U0000F023' : U'g';
        QVERIFY2(!pixelsOf(file, sample).isNull(), family);
        QCOMPARE(pixelsOf(drawn, sample), pixelsOf(file, sample));
    }
}

void FontsTest::iconsHaveGlyphs()
{
    const QRawFont font(pathOf("fontawesome-webfont"), 200);
    for (const char32_t icon : U"\uF001\uF00C\uF012\uF023\uF026\uF027\uF028\uF054\uF058\uF070\uF071\uF077\uF078\uF084"
                               U"\uF0DC\uF100\uF10C\uF111\uF185\uF1E6\U0001F507") {
        if (icon)
            QVERIFY2(!pixelsOf(font, icon).isNull(), qPrintable(QString::number(icon, 16)));
    }
    // Across the middle of the crossed-out speaker: its lower part and the stroke in one piece, a gap, the upper part.
    // With contours of opposite directions, stroke and speaker would cancel out.
    const QImage pixels = pixelsOf(font, U'\U0001F507');
    QString ink;
    for (int x = 0; x < pixels.width(); ++x)
        ink += qAlpha(pixels.pixel(x, pixels.height() / 2)) > 127 ? '#' : ' ';
    QCOMPARE(ink.split(' ', Qt::SkipEmptyParts).size(), 2);
}

QTEST_MAIN(FontsTest)
#include "fontstest.moc"
