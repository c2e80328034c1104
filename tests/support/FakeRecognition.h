#pragma once

#include "frame/Clock.h"
#include "platform/ScreenCapture.h"
#include "platform/TextRecognizer.h"

#include <algorithm>
#include <vector>

namespace nimbrelle {

/// Gives a blank picture of the right size and records what was asked for.
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
        if (failure)
            throw CaptureFailure(*failure);
        Picture picture;
        picture.width = static_cast<int>(area.width() * screen.scale);
        picture.height = static_cast<int>(area.height() * screen.scale);
        picture.scale = screen.scale;
        picture.pixels = QByteArray(qsizetype{4} * picture.width * picture.height, '\xff');
        co_return picture;
    }

    bool allowed = true;
    std::optional<QString> failure;
    std::vector<Request> requests;
};

/// Finds the scripted lines, after `delay` of the test's clock.
class FakeTextRecognizer final : public TextRecognizer {
public:
    explicit FakeTextRecognizer(Clock &clock) : m_clock(clock) { }

    QCoro::Task<QList<RecognizedLine>> recognize(
        Picture, RecognitionStyle style, std::stop_token stop) override
    {
        styles.push_back(style);
        const QList<RecognizedLine> found = style == RecognitionStyle::plain ? lines : subtitles;
        if (delay.count() > 0)
            co_await m_clock.sleep(delay, stop);
        if (stop.stop_requested())
            throw Cancelled();
        if (failure)
            throw RecognitionFailure(*failure);
        co_return found;
    }

    /// A line whose characters share its box evenly.
    static RecognizedLine line(const QString &text, const QRectF &box)
    {
        RecognizedLine made{.text = text, .box = box, .unitBoxes = {}};
        const double step = box.width() / static_cast<double>(std::max(text.size(), qsizetype{1}));
        for (qsizetype unit = 0; unit < text.size(); ++unit)
            made.unitBoxes.append(text.at(unit).isSpace()
                    ? QRectF()
                    : QRectF(box.x() + step * static_cast<double>(unit), box.y(), step, box.height()));
        return made;
    }

    QList<RecognizedLine> lines;
    QList<RecognizedLine> subtitles; ///< what the second try finds
    std::chrono::milliseconds delay{0};
    std::optional<QString> failure;
    std::vector<RecognitionStyle> styles;

private:
    Clock &m_clock;
};

} // namespace nimbrelle
