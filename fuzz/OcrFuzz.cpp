#include "Texts.h"
#include "screen/ScreenOCR.h"

#include <cmath>
#include <cstring>

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

// Reads numbers and texts off the input until it has no more.
class Input {
public:
    Input(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) { }

    bool isEmpty() const { return m_size == 0; }
    std::uint8_t byte()
    {
        if (m_size == 0)
            return 0;
        --m_size;
        return *m_data++;
    }
    // Mostly about 0 to 1 as an engine gives it, now and then far out or no number at all.
    double place()
    {
        const std::uint8_t value = byte();
        if (value == 255)
            return std::nan("");
        return value >= 250 ? (value - 252) * 1e300 : value / 200.0 - 0.1;
    }
    QRectF box() { return {place(), place(), place(), place()}; }
    QString text()
    {
        const std::size_t count = std::min<std::size_t>(byte() % 40, m_size);
        const QString text =
            QString::fromUtf8(reinterpret_cast<const char *>(m_data), static_cast<int>(count));
        m_data += count;
        m_size -= count;
        return text;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
};

RecognizedLine lineFrom(Input &input)
{
    RecognizedLine line{.text = input.text(), .box = input.box(), .unitBoxes = {}, .unitConfidences = {}};
    const qsizetype boxes = input.byte() % 4 == 0 ? line.text.size() / 2 : line.text.size();
    for (qsizetype i = 0; i < boxes; ++i)
        line.unitBoxes.append(line.text[i].isSpace() ? QRectF() : input.box());
    return line;
}

qsizetype letterCount(const QString &text)
{
    return std::ranges::count_if(text, [](QChar c) { return !c.isSpace() && c != u'-'; });
}

} // namespace

/// Whatever boxes an engine gives: all lines are sorted, each once, and the word under the pointer is a word
/// of a line that is in the context.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Input input(data, size);
    const QPointF cursor(input.place(), input.place());
    QList<RecognizedLine> recognized;
    while (!input.isEmpty() && recognized.size() < 60)
        recognized.append(lineFrom(input));

    const QList<ScreenOCR::Line> lines = ScreenOCR::linesFrom(recognized);
    require(lines.size() == recognized.size());
    const QList<ScreenOCR::Line> sorted = ScreenOCR::inReadingOrder(lines);
    require(sorted.size() == lines.size());
    require(letterCount(ScreenOCR::join(sorted)) == letterCount(ScreenOCR::join(lines)));

    const auto seen = ScreenOCR::analyze(lines, cursor, ScreenOCR::Seek::word);
    require(!seen || (seen->word && seen->wordRect && !seen->word->isEmpty()));
    const auto around = ScreenOCR::analyze(lines, cursor, ScreenOCR::Seek::contextOnly);
    require(around.has_value() == !lines.isEmpty());
    require(!around || !around->word);

    const ScreenOCR::Marked marked{.text = QStringLiteral("marked"), .from = cursor, .to = cursor};
    const QList<ScreenOCR::Line> mended = ScreenOCR::withMarked(lines, marked);
    require(mended.size() == lines.size() || mended.size() == lines.size() + 1);
    require(ScreenOCR::join(mended).contains(marked.text));
    return 0;
}
