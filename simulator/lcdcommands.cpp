#include "simulator/commandparsers.h"
#include "simulator/device.h"
#include "simulator/lcdcomparison.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <memory>

using namespace std::chrono_literals;

namespace {

CommandResult savePicture(const QImage &picture, const QString &file)
{
    QImageWriter writer(file, "png");
    if (writer.write(picture))
        return {};
    return {ExitCode::Failed, QStringLiteral("cannot write %1: %2").arg(file, writer.errorString())};
}

/// What expect-lcd compares with, and how closely.
struct Reference
{
    QString file;
    int allowed = 0;
    double percent = 0;
    QImage picture;
};

CommandResult load(Reference &reference)
{
    QImageReader reader(reference.file);
    reference.picture = reader.read();
    if (!reference.picture.isNull())
        return {};
    return {ExitCode::Failed,
        QStringLiteral("cannot read %1: %2; \"lcd %1\" saves the present picture there")
            .arg(reference.file, reader.errorString())};
}

bool matches(const LcdDifference &difference, const Reference &reference)
{
    return difference.sameSize && difference.percent <= reference.percent;
}

CommandResult reportDifference(const QImage &actual, const Reference &reference)
{
    const QFileInfo info(reference.file);
    const QString beside = info.path() + '/' + info.completeBaseName() + QStringLiteral(".actual.png");
    const CommandResult saved = savePicture(actual, beside);
    const LcdDifference difference = compareLcd(actual, reference.picture, reference.allowed);
    const QString what = !difference.sameSize
        ? QStringLiteral("%1 is no picture of %2 x %3 pixels")
              .arg(reference.file)
              .arg(actual.width())
              .arg(actual.height())
        : QStringLiteral("%1 of %2 pixels (%3 %, allowed %4 %) differ from %5 by more than %6, at most by %7")
              .arg(difference.pixels)
              .arg(actual.width() * actual.height())
              .arg(difference.percent, 0, 'g', 3)
              .arg(reference.percent)
              .arg(reference.file)
              .arg(reference.allowed)
              .arg(difference.largest);
    return {ExitCode::Failed,
        what + (saved.ok() ? QStringLiteral("; the actual picture is in %1").arg(beside) : "; " + saved.text)};
}

} // namespace

Action parseLeds(CommandContext &context, Arguments &)
{
    Action action;
    action.begin = [&device = context.device] {
        QStringList lit;
        for (int panel = 1; panel <= 3; ++panel) {
            for (int button = 1; button <= 40; ++button) {
                if (const int value = device.bed().led(panel, button))
                    lit += QStringLiteral("%1 = %2").arg(keyName(device.layout(), {panel, button})).arg(value);
            }
        }
        return CommandResult{ExitCode::Ok, lit.isEmpty() ? QStringLiteral("all LEDs are 0") : lit.join('\n')};
    };
    return action;
}

Action parseLcd(CommandContext &context, Arguments &arguments)
{
    Action action;
    action.begin
        = [&bed = context.device.bed(), file = arguments.word("FILE.png")] { return savePicture(bed.lcd(), file); };
    return action;
}

Action parseWaitLcdStill(CommandContext &context, Arguments &arguments)
{
    struct Watch
    {
        QImage picture;
        QElapsedTimer unchanged;
    };
    const auto limit = arguments.within(defaultWithin);
    const auto still = arguments.time("MS", 300ms);
    auto watch = std::make_shared<Watch>();
    Action action;
    action.poll = [&bed = context.device.bed(), still, watch]() -> std::optional<CommandResult> {
        const QImage picture = bed.lcd();
        if (!watch->unchanged.isValid() || picture != watch->picture) {
            watch->picture = picture;
            watch->unchanged.start();
        }
        if (watch->unchanged.hasExpired(still.count()))
            return CommandResult();
        return std::nullopt;
    };
    action.limit = limit;
    action.expire = [still, limit] {
        return CommandResult{ExitCode::TimedOut,
            QStringLiteral("the LCD was never the same for %1 ms within %2 ms").arg(still.count()).arg(limit.count())};
    };
    return action;
}

Action parseExpectLcd(CommandContext &context, Arguments &arguments)
{
    auto reference = std::make_shared<Reference>();
    TestBed &bed = context.device.bed();
    Action action;
    action.limit = arguments.within(defaultWithin);
    reference->file = arguments.word("FILE.png");
    reference->allowed = arguments.number("DIFFERENCE", 0, 255, 0);
    reference->percent = arguments.decimal("PERCENT", 0, 100, 0);
    action.begin = [reference] { return load(*reference); };
    action.poll = [&bed, reference]() -> std::optional<CommandResult> {
        if (matches(compareLcd(bed.lcd(), reference->picture, reference->allowed), *reference))
            return CommandResult();
        return std::nullopt;
    };
    action.expire = [&bed, reference] { return reportDifference(bed.lcd(), *reference); };
    return action;
}
