#include "screen/ScreenOCR.h"

#include "platform/ScreenCapture.h"
#include "platform/WindowAtPointer.h"

#include <cmath>

namespace nimbrelle {

namespace {

constexpr double oneRow = 12; // points; what was marked over more than this has no middle on its text

QString contextAt(const QList<ScreenOCR::Line> &lines, QPointF cursor)
{
    return ScreenOCR::join(ScreenOCR::paragraphAt(lines, cursor));
}

} // namespace

ScreenOCR::ScreenOCR(
    const Screens &screens, const WindowAtPointer &window, ScreenCapture &capture, TextRecognizer &recognizer)
    : m_screens(screens), m_window(window), m_capture(capture), m_recognizer(recognizer)
{
}

bool ScreenOCR::isAllowed() const
{
    return m_capture.isAllowed();
}

QCoro::Task<QList<ScreenOCR::Line>> ScreenOCR::recognizeLines(
    Picture picture, RecognitionStyle style, std::stop_token stop)
{
    const QList<RecognizedLine> found = co_await m_recognizer.recognize(picture, style, stop);
    co_return linesFrom(found);
}

QCoro::Task<std::optional<ScreenOCR::Result>> ScreenOCR::recognize(
    QPointF around, Seek seek, std::stop_token stop)
{
    const std::optional<Snapshot> seen = co_await take(around);
    if (stop.stop_requested())
        throw Cancelled();
    if (!seen)
        co_return std::nullopt;
    const QPointF cursor = seen->area.normalized(around);
    std::optional<Result> result;
    for (const RecognitionStyle style : {RecognitionStyle::plain, RecognitionStyle::subtitles}) {
        if (result || (seek == Seek::contextOnly && style == RecognitionStyle::subtitles))
            break;
        const QList<Line> found = co_await recognizeLines(seen->picture, style, stop);
        const QList<Line> lines = legible(found, cursor);
        result = analyze(lines, cursor, seek);
        if (result && style == RecognitionStyle::plain)
            result->context = contextAt(co_await completed(lines, seen->area, cursor, stop), cursor);
    }
    if (result && result->wordRect)
        result->wordRect = seen->area.toGlobal(*result->wordRect);
    co_return result;
}

QCoro::Task<std::optional<ScreenOCR::Snapshot>> ScreenOCR::take(QPointF around)
{
    const auto screen = screenHolding(m_screens.all(), around);
    const auto area = screen ? CaptureArea::around(around, *screen) : std::nullopt;
    if (!area)
        co_return std::nullopt;
    const Picture picture = co_await m_capture.capture(area->screen, area->rect);
    if (!picture.isValid())
        co_return std::nullopt;
    co_return Snapshot{.area = *area, .picture = picture};
}

QCoro::Task<std::optional<QString>> ScreenOCR::contextOf(
    Marked marked, std::optional<Snapshot> before, std::stop_token stop)
{
    if (std::abs(marked.from.y() - marked.to.y()) > oneRow)
        marked.from = marked.to;
    std::optional<QString> context;
    if (before)
        context = co_await contextIn(std::move(*before), marked, Gap::isLeft, stop);
    if (context)
        co_return context;
    std::optional<Snapshot> now = co_await take(marked.middle());
    if (stop.stop_requested())
        throw Cancelled();
    if (now)
        context = co_await contextIn(std::move(*now), marked, Gap::isFilled, stop);
    co_return context;
}

QCoro::Task<std::optional<QString>> ScreenOCR::contextIn(
    Snapshot seen, Marked marked, Gap gap, std::stop_token stop)
{
    const QList<Line> all = co_await recognizeLines(seen.picture, RecognitionStyle::plain, stop);
    marked.from = seen.area.normalized(marked.from);
    marked.to = seen.area.normalized(marked.to);
    QList<Line> lines = legible(all, marked.middle());
    if (lines.isEmpty())
        co_return std::nullopt;
    if (!hasMarked(lines, marked)) {
        if (gap == Gap::isLeft)
            co_return std::nullopt;
        lines = withMarked(lines, marked);
    }
    lines = co_await completed(std::move(lines), seen.area, marked.middle(), stop);
    const QString context = contextAt(lines, marked.middle());
    co_return context.isEmpty() ? std::nullopt : std::optional(context);
}

// A second look at each side, no larger than the first.
QCoro::Task<QList<ScreenOCR::Line>> ScreenOCR::completed(
    QList<Line> lines, CaptureArea area, QPointF cursor, std::stop_token stop)
{
    const double width = CaptureArea::mostWidth / area.rect.width();
    QRectF window;
    for (const Side side : {Side::left, Side::right}) {
        const QList<Line> sure = withoutDoubtfulWords(lines, side);
        const std::optional<QRectF> rest = restOf(sure, cursor, side, width);
        if (rest && window.isNull())
            window = m_window.current().area;
        const auto beyond =
            rest ? CaptureArea::of(area.toGlobal(*rest).intersected(window), area.screen) : std::nullopt;
        const Picture picture = beyond ? co_await m_capture.capture(beyond->screen, beyond->rect) : Picture();
        if (stop.stop_requested())
            throw Cancelled();
        if (!picture.isValid())
            continue;
        QList<Line> beside = uncut(co_await recognizeLines(picture, RecognitionStyle::plain, stop));
        for (Line &line : beside) {
            line.box = area.normalized(beyond->toGlobal(line.box));
            for (Word &word : line.words)
                word.box = area.normalized(beyond->toGlobal(word.box));
        }
        lines = joined(sure, std::move(beside), side);
    }
    co_return lines;
}

QCoro::Task<std::optional<QString>> ScreenOCR::recognizeText(QRectF in, std::stop_token stop)
{
    const auto screen = screenHolding(m_screens.all(), in.center());
    const auto area = screen ? CaptureArea::of(in, *screen) : std::nullopt;
    if (!area)
        co_return std::nullopt;
    const Picture picture = co_await m_capture.capture(area->screen, area->rect);
    if (stop.stop_requested())
        throw Cancelled();
    if (!picture.isValid())
        co_return std::nullopt;
    QList<Line> lines = inEnglish(co_await recognizeLines(picture, RecognitionStyle::plain, stop));
    if (lines.isEmpty())
        lines = inEnglish(co_await recognizeLines(picture, RecognitionStyle::subtitles, stop));
    co_return join(inReadingOrder(lines));
}

} // namespace nimbrelle
