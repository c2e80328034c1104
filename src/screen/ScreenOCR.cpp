#include "screen/ScreenOCR.h"

#include "platform/ScreenCapture.h"

namespace nimbrelle {

ScreenOCR::ScreenOCR(const Screens &screens, ScreenCapture &capture, TextRecognizer &recognizer)
    : m_screens(screens), m_capture(capture), m_recognizer(recognizer)
{
}

bool ScreenOCR::isAllowed() const
{
    return m_capture.isAllowed();
}

QCoro::Task<Picture> ScreenOCR::pictureOf(CaptureArea area, std::stop_token stop)
{
    Picture picture = co_await m_capture.capture(area.screen, area.rect);
    if (stop.stop_requested())
        throw Cancelled();
    co_return picture;
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
    const auto screen = screenHolding(m_screens.all(), around);
    const auto area = screen ? CaptureArea::around(around, *screen) : std::nullopt;
    if (!area)
        co_return std::nullopt;
    const Picture picture = co_await pictureOf(*area, stop);
    if (!picture.isValid())
        co_return std::nullopt;
    const QPointF cursor = area->normalized(around);
    const QList<Line> lines = co_await recognizeLines(picture, RecognitionStyle::plain, stop);
    std::optional<Result> result = analyze(lines, cursor, seek);
    if (!result && seek == Seek::word) {
        const QList<Line> subtitles = co_await recognizeLines(picture, RecognitionStyle::subtitles, stop);
        result = analyze(subtitles, cursor, seek);
    }
    if (result && result->wordRect)
        result->wordRect = area->toGlobal(*result->wordRect);
    co_return result;
}

QCoro::Task<std::optional<QString>> ScreenOCR::recognizeText(QRectF in, std::stop_token stop)
{
    const auto screen = screenHolding(m_screens.all(), in.center());
    const auto area = screen ? CaptureArea::of(in, *screen) : std::nullopt;
    if (!area)
        co_return std::nullopt;
    const Picture picture = co_await pictureOf(*area, stop);
    if (!picture.isValid())
        co_return std::nullopt;
    QList<Line> lines = co_await recognizeLines(picture, RecognitionStyle::plain, stop);
    if (lines.isEmpty())
        lines = co_await recognizeLines(picture, RecognitionStyle::subtitles, stop);
    co_return join(inReadingOrder(lines));
}

} // namespace nimbrelle
