#include "ui/screens/screeniohealth.h"

#include "hardware/framedescriptor.h"
#include "managers/variantmanager.h"
#include "protocol/catalogue.h"
#include "ui/screens/healthlabel.h"

#include <QRegularExpression>

namespace {

constexpr int columnStep = healthLabelWidth + 8; // pixels, with the space between two labels

enum Rail {
    Out5V,
    In5V,
    V3_3,
    V1_3,
    V1_0,
    Audio3_3,
    V1_2,
    V1_1,
    V1_5,
    V2_5,
    Dp3_3,
    DpAudio3_3,
    Temperature,
};

const struct
{
    const char *caption;
    const Dt3Property &property;
} rails[] = {
    {"5V out", propBoardVoltage0_5V0},
    {"5V", propBoardVoltage1_5V0},
    {"3.3V", propBoardVoltage2_3V3},
    {"1.3V", propBoardVoltage3_1V3},
    {"1.0V", propBoardVoltage4_1V0},
    {"3.3V audio", propBoardVoltage5_3V3},
    {"1.2V", propBoardVoltage6_1V2},
    {"1.1V", propBoardVoltage7_1V1},
    {"1.5V", propBoardVoltage8_1V5},
    {"2.5V", propBoardVoltage9_2V5},
    {"3.3V", propBoardVoltage10_3V3},
    {"3.3V audio", propBoardVoltage11_3V3},
    {"Temp°C", propBoardTemperature0},
};

template <typename... Rails> constexpr unsigned railBits(Rails... bits) { return ((1U << bits) | ...); }

/// The rails that a port has, a bit each. @param version of its board.
unsigned railsOf(const FrameDescriptor &frame, int port, bool output, int version)
{
    constexpr int hdmi = 1, displayPort = 2;
    constexpr int lastWith1V3 = 19;
    const int kind = frame.portClass(port, output);
    unsigned rail = railBits(V3_3, Temperature);
    if (kind == hdmi)
        rail |= railBits(Out5V, version <= lastWith1V3 ? V1_3 : V1_0);
    else if (kind == displayPort && !output)
        rail |= railBits(V1_0, V1_2);
    if (kind == displayPort && output)
        return rail | railBits(V1_1, V1_5, V2_5, Dp3_3, DpAudio3_3);
    return rail | railBits(In5V) | (frame.portHasA(port, output) ? railBits(Audio3_3) : 0);
}

/// The label keeps the place of its column, whatever labels before it are hidden.
void placeBehind(PropertyDisplayLabel *label, int hidden)
{
    label->setFixedWidth(healthLabelWidth + columnStep * hidden);
    label->setContentsMargins(columnStep * hidden, 0, 0, 0);
}

} // namespace

ScreenIoList::ScreenIoList(QWidget *parent)
    : ScreenData(parent)
{
    showBackButton();
    connect(VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenIoList::variantIdentified);
    beginPendingEntry();
}

void ScreenIoList::variantIdentified()
{
    if (!std::exchange(m_built, true)) {
        const FrameDescriptor *frame = VariantManager::instance()->frameDescriptor();
        auto *page = new ScreenIoHealth(parentWidget()); // the Pool's, as this page
        addBoards("IN%1..%2", "/IB%1", frame->inputCardCount(), page);
        addBoards("OUT%1..%2", "/OB%1", frame->outputCardCount(), page);
    }
    endPendingEntry();
}

void ScreenIoList::addBoards(const char *caption, const char *port, int count, ScreenIoHealth *page)
{
    for (int board = 1; board <= count; ++board) {
        DataLine *line = addLine(QString::fromLatin1(caption).arg(4 * board - 3).arg(4 * board), page);
        line->setPort(QString::fromLatin1(port).arg(board), true);
    }
}

ScreenIoHealth::ScreenIoHealth(QWidget *parent)
    : ScreenData(parent)
{
    static_assert(std::size(rails) == railCount);
    for (size_t rail = 0; rail < railCount; ++rail) {
        DataLine *line = addLine(QString::fromUtf8(rails[rail].caption));
        for (Dt3Property &property : m_properties[rail]) {
            property = rails[rail].property;
            addValue(line, &property, newHealthLabel(this));
        }
        showDisplayOnly(line);
    }
    showBackButton();
    connect(VariantManager::instance(), &VariantManager::variantIdentified, this, &ScreenIoHealth::variantIdentified);
}

void ScreenIoHealth::setPort(const QString &port)
{
    ScreenData::setPort(port);
    for (auto &columns : m_properties) {
        for (size_t column = 0; column < columnCount; ++column)
            columns[column].setPort(port + portNames[column], false);
    }
    rebuildValueIndex();
    showRails();
}

void ScreenIoHealth::variantIdentified()
{
    if (!port().isEmpty())
        showRails();
}

void ScreenIoHealth::showRails()
{
    static const QRegularExpression form(QStringLiteral(R"(^/(.)B(\d+)$)"));
    const QRegularExpressionMatch match = form.match(port());
    const FrameDescriptor *frame = VariantManager::instance()->frameDescriptor();
    if (!match.hasMatch() || !frame) {
        qDebug("Buggy IO health subpart");
        return;
    }
    const bool output = match.capturedView(1) != QLatin1StringView("I");
    const int board = match.capturedView(2).toInt() - 1;
    const int version = VariantManager::instance()->cardVersion(output ? 0 : 1, board);
    std::array<unsigned, columnCount> columns;
    unsigned shown = 0;
    for (size_t column = 0; column < columnCount; ++column) {
        columns[column] = railsOf(*frame, 4 * board + static_cast<int>(column), output, version);
        shown |= columns[column];
    }
    for (size_t rail = 0; rail < railCount; ++rail) {
        DataLine *line = lines()[static_cast<qsizetype>(rail)];
        if (!(shown & railBits(rail))) {
            hideLine(line);
            continue;
        }
        showDisplayOnly(line);
        int hidden = 0;
        for (size_t column = 0; column < columnCount; ++column) {
            PropertyDisplayLabel *label = line->values()[static_cast<qsizetype>(column)];
            const bool has = columns[column] & railBits(rail);
            label->setVisible(has);
            placeBehind(label, hidden);
            hidden = has ? 0 : hidden + 1;
        }
    }
}
