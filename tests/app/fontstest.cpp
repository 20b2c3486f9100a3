#include <QFontDatabase>
#include <QFontInfo>
#include <QPainterPath>
#include <QRawFont>
#include <QTest>

/// The font files that the build leaves for the program, seen through Qt as the program sees them.
class FontsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void familyIsTheFileAsItIs_data();
    void familyIsTheFileAsItIs();
    void iconHasAGlyph_data();
    void iconHasAGlyph();
    void crossedOutSpeakerHasNoHoles();
};

namespace {

struct FontFile
{
    const char *name, *family;
};

constexpr FontFile files[] = {
    {"Roboto-Bold-Ostra", "RobotoBold"},
    {"Roboto-Medium-Ostra", "RobotoMedium"},
    {"Roboto-Regular-Ostra", "RobotoRegular"},
    {"Roboto-Light-Ostra", "RobotoLight"},
    {"fontawesome-webfont", "FontAwesome"},
};

constexpr char32_t icons[] = {0xF001, 0xF00C, 0xF012, 0xF023, 0xF026, 0xF027, 0xF028, 0xF054, 0xF058, 0xF070, 0xF071,
    0xF077, 0xF078, 0xF084, 0xF0DC, 0xF100, 0xF10C, 0xF111, 0xF185, 0xF1E6, 0x1F507};

QString pathOf(const char *file) { return QStringLiteral(FONT_FOLDER "/%1.ttf").arg(QLatin1String(file)); }

quint32 glyphOf(const QRawFont &font, char32_t codePoint)
{
    return font.glyphIndexesForString(QString::fromUcs4(&codePoint, 1)).value(0);
}

} // namespace

void FontsTest::initTestCase()
{
    // As the program does: a system font of the same name that is found later would replace ours.
    QFontDatabase::families();
    for (const FontFile &file : files) {
        const int id = QFontDatabase::addApplicationFont(pathOf(file.name));
        QCOMPARE(QFontDatabase::applicationFontFamilies(id), QStringList{QLatin1String(file.family)});
    }
}

void FontsTest::familyIsTheFileAsItIs_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("family");
    for (const FontFile &file : files)
        QTest::newRow(file.family) << pathOf(file.name) << QString::fromLatin1(file.family);
}

void FontsTest::familyIsTheFileAsItIs()
{
    QFETCH(QString, path);
    QFETCH(QString, family);
    QFont font(family);
    font.setPixelSize(40);
    QVERIFY(QFontInfo(font).exactMatch());
    QCOMPARE(QFontInfo(font).weight(), int(QFont::Normal));
    QCOMPARE(QFontDatabase::weight(family, QStringLiteral("Regular")), int(QFont::Normal));

    // A synthesised weight would show in the pixels, and so would another font of that name.
    const QRawFont drawn = QRawFont::fromFont(font);
    const QRawFont file(path, 40, font.hintingPreference());
    QCOMPARE(drawn.familyName(), family);
    QCOMPARE(drawn.fontTable("head"), file.fontTable("head"));
    const char32_t sample = family == QLatin1String("FontAwesome") ? U'\U0000F023' : U'g';
    const QImage pixels = file.alphaMapForGlyph(glyphOf(file, sample), QRawFont::PixelAntialiasing);
    QVERIFY(!pixels.isNull());
    QCOMPARE(drawn.alphaMapForGlyph(glyphOf(drawn, sample), QRawFont::PixelAntialiasing), pixels);
}

void FontsTest::iconHasAGlyph_data()
{
    QTest::addColumn<char32_t>("icon");
    for (const char32_t icon : icons)
        QTest::addRow("U+%04X", static_cast<unsigned>(icon)) << icon;
}

void FontsTest::iconHasAGlyph()
{
    QFETCH(char32_t, icon);
    const QRawFont font = QRawFont::fromFont(QFont(QStringLiteral("FontAwesome")));
    QVERIFY(glyphOf(font, icon) != 0);
    QVERIFY(!font.pathForGlyph(glyphOf(font, icon)).isEmpty());
}

/// The stroke runs over the lower part of the speaker: with contours of opposite directions they would cancel out.
void FontsTest::crossedOutSpeakerHasNoHoles()
{
    QFont font(QStringLiteral("FontAwesome"));
    font.setPixelSize(200);
    const QRawFont raw = QRawFont::fromFont(font);
    const QImage pixels = raw.alphaMapForGlyph(glyphOf(raw, U'\U0001F507'), QRawFont::PixelAntialiasing);
    QVERIFY(!pixels.isNull());
    // Across the middle: the lower part and the stroke in one piece, a gap, the upper part.
    int edges = 0;
    bool inside = false;
    for (int x = 0, y = pixels.height() / 2; x < pixels.width(); ++x) {
        const bool ink = qAlpha(pixels.pixel(x, y)) > 127;
        edges += ink != inside;
        inside = ink;
    }
    QCOMPARE(edges + inside, 4);
}

QTEST_MAIN(FontsTest)
#include "fontstest.moc"
