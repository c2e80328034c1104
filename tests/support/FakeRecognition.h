#pragma once

#include "frame/Clock.h"
#include "platform/ScreenCapture.h"
#include "platform/TextRecognizer.h"

#include <algorithm>
#include <functional>
#include <map>
#include <vector>

namespace nimbrelle {

/// Gives a picture of one pixel and records what was asked for.
class FakeScreenCapture final : public ScreenCapture {
public:
    struct Request {
        Screen screen;
        QRectF area;
    };

    bool isAllowed() const override { return allowed; }
    QCoro::Task<Picture> capture(Screen screen, QRectF area) override
    {
        requests.push_back({.screen = screen, .area = area});
        if (willCapture)
            willCapture(area);
        if (failure)
            throw CaptureFailure(*failure);
        co_return Picture{.width = 1, .height = 1, .scale = 1, .pixels = QByteArray(4, shown)};
    }

    bool allowed = true;
    char shown = '\xff'; ///< tells one picture from another
    std::optional<QString> failure;
    std::vector<Request> requests;
    std::function<void(const QRectF &area)> willCapture;
};

/// Finds the scripted lines, after `delay` of the test's clock.
class FakeTextRecognizer final : public TextRecognizer {
public:
    explicit FakeTextRecognizer(Clock &clock) : m_clock(clock) { }

    QCoro::Task<QList<RecognizedLine>> recognize(
        Picture picture, RecognitionStyle style, std::stop_token stop) override
    {
        styles.push_back(style);
        const auto scripted = linesOf.find(picture.pixels.front());
        const QList<RecognizedLine> found = scripted != linesOf.end() ? scripted->second
            : style == RecognitionStyle::plain                        ? lines
                                                                      : subtitles;
        if (delay.count() > 0)
            co_await m_clock.sleep(delay, stop);
        if (stop.stop_requested())
            throw Cancelled();
        if (failure)
            throw RecognitionFailure(*failure);
        co_return found;
    }

    /// A line whose characters share its box evenly.
    static RecognizedLine line(const QString &text, const QRectF &box, double confidence = 100)
    {
        RecognizedLine made{.text = text, .box = box, .unitBoxes = {}, .unitConfidences = {}};
        const double step = box.width() / static_cast<double>(std::max(text.size(), qsizetype{1}));
        for (qsizetype unit = 0; unit < text.size(); ++unit)
            made.unitBoxes.append(text.at(unit).isSpace()
                    ? QRectF()
                    : QRectF(box.x() + step * static_cast<double>(unit), box.y(), step, box.height()));
        made.unitConfidences.fill(confidence, text.size());
        return made;
    }

    QList<RecognizedLine> lines;
    std::map<char, QList<RecognizedLine>> linesOf; ///< of the pictures with that `shown`
    QList<RecognizedLine> subtitles; ///< what the second try finds
    std::chrono::milliseconds delay{0};
    std::optional<QString> failure;
    std::vector<RecognitionStyle> styles;

private:
    Clock &m_clock;
};

} // namespace nimbrelle
