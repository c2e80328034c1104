#include "platform/linux/ocr/TesseractEngine.h"

#include "platform/linux/ocr/EngineText.h"
#include "platform/linux/ocr/GreyPicture.h"
#include "platform/linux/ocr/TesseractLibrary.h"

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace tesseract;

namespace {

using Iterator = std::unique_ptr<TessResultIterator, decltype(&TessResultIteratorDelete)>;
using Monitor = std::unique_ptr<ETEXT_DESC, decltype(&TessMonitorDelete)>;

/// What the engine takes for one point of text.
constexpr int pointsPerInch = 70;
/// Icons and textures come out as words that the engine itself doesn't believe in.
constexpr float leastConfidence = 25;

/// Only called where it has been loaded.
const TesseractLibrary &library()
{
    return *TesseractLibrary::shared();
}

struct Stops {
    const std::stop_token &flow;
    const std::stop_token &ending;
};

bool isStopped(void *stops, int)
{
    const auto *both = static_cast<const Stops *>(stops);
    return both->flow.stop_requested() || both->ending.stop_requested();
}

QString textAt(const TessResultIterator *results, TessPageIteratorLevel level)
{
    const std::unique_ptr<char, decltype(&TessDeleteText)> text(
        library().text(results, level), library().deleteText);
    return text ? QString::fromUtf8(text.get()).trimmed() : QString();
}

QRect boxAt(const TessResultIterator *results, TessPageIteratorLevel level)
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    if (!library().boundingBox(library().places(results), level, &left, &top, &right, &bottom))
        return {};
    return {QPoint(left, top), QPoint(right - 1, bottom - 1)};
}

/// Letter by letter; the outermost ones reach to the word's own edges, which the engine knows better.
std::vector<QRect> unitBoxesAt(const TessResultIterator *word, const EngineWord &whole)
{
    std::vector<QRect> boxes;
    const Iterator symbol(library().copyIterator(word), library().deleteIterator);
    do {
        const QString text = textAt(symbol.get(), RIL_SYMBOL);
        boxes.insert(
            boxes.end(), static_cast<std::size_t>(text.size()), boxAt(symbol.get(), RIL_SYMBOL) & whole.box);
    } while (!library().isAtFinalElement(library().places(symbol.get()), RIL_WORD, RIL_SYMBOL)
        && library().next(symbol.get(), RIL_SYMBOL));
    if (boxes.size() != static_cast<std::size_t>(whole.text.size()))
        return std::vector<QRect>(static_cast<std::size_t>(whole.text.size()), whole.box);
    boxes.front().setLeft(whole.box.left());
    boxes.back().setRight(whole.box.right());
    return boxes;
}

std::vector<EngineLine> linesOf(TessBaseAPI *api)
{
    std::vector<EngineLine> lines;
    const Iterator results(library().iterator(api), library().deleteIterator);
    if (!results)
        return lines;
    do {
        if (library().isAtBeginningOf(library().places(results.get()), RIL_TEXTLINE) || lines.empty())
            lines.emplace_back();
        EngineWord word{.text = textAt(results.get(), RIL_WORD),
            .box = boxAt(results.get(), RIL_WORD),
            .unitBoxes = {},
            .confidence = library().confidence(results.get(), RIL_WORD)};
        if (word.text.isEmpty() || !word.box.isValid() || word.confidence < leastConfidence)
            continue;
        word.unitBoxes = unitBoxesAt(results.get(), word);
        lines.back().push_back(std::move(word));
    } while (library().next(results.get(), RIL_WORD));
    std::erase_if(lines, [](const EngineLine &line) { return line.empty(); });
    return lines;
}

} // namespace

TesseractEngine::~TesseractEngine()
{
    if (m_api)
        library().destroy(m_api);
}

QString TesseractEngine::load()
{
    if (m_api)
        return {};
    if (!TesseractLibrary::shared())
        return u"没有找到文字识别引擎，请安装 libtesseract5"_s;
    library().useOneThread();
    TessBaseAPI *api = library().create();
    library().setVariable(api, "debug_file", "/dev/null");
    if (library().init(api, nullptr, "eng", OEM_LSTM_ONLY) != 0) {
        library().destroy(api);
        return u"没有找到英文识别数据，请安装 tesseract-ocr-eng"_s;
    }
    // Columns, labels and captions stand side by side on a screen; any other mode reads them as one line.
    library().setPageSegMode(api, PSM_SPARSE_TEXT);
    m_api = api;
    return {};
}

Recognition TesseractEngine::read(const Picture &picture, RecognitionStyle style, const std::stop_token &stop,
    const std::stop_token &ending)
{
    const Stops stops{stop, ending};
    Recognition recognition;
    if (!picture.isValid() || isStopped(const_cast<Stops *>(&stops), 0))
        return recognition;
    recognition.failure = load();
    if (!recognition.failure.isEmpty())
        return recognition;
    const GreyPicture grey = prepared(picture, style);
    library().setImage(m_api, grey.pixels.data(), grey.width, grey.height, 1, grey.width);
    library().setSourceResolution(
        m_api, static_cast<int>(pointsPerInch * picture.scale * enlargement(picture)));
    const Monitor monitor(library().createMonitor(), library().deleteMonitor);
    library().setCancel(monitor.get(), isStopped);
    library().setCancelThis(monitor.get(), const_cast<Stops *>(&stops));
    if (library().recognize(m_api, monitor.get()) == 0)
        for (EngineLine &line : linesOf(m_api)) {
            mendPronouns(line);
            recognition.lines.append(recognizedLine(line, {grey.width, grey.height}));
        }
    library().clear(m_api); // nothing of the picture is kept
    return recognition;
}

} // namespace nimbrelle
