#include "platform/linux/TesseractEngine.h"

#include "platform/linux/EngineText.h"
#include "platform/linux/GreyPicture.h"

#include <algorithm>
#include <dlfcn.h>
#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>

namespace nimbrelle {
namespace {

using tesseract::PageIteratorLevel;

/// What the engine takes for one point of text.
constexpr int pointsPerInch = 70;
/// Icons and textures come out as words that the engine itself doesn't believe in.
constexpr float leastConfidence = 25;

/// The engine's inner threads wait for each other so busily that two cores are slower than one, many times
/// over. The setting counts for the thread that makes it.
void useOneThread()
{
    using SetLevels = void (*)(int);
    if (const auto setLevels = reinterpret_cast<SetLevels>(dlsym(RTLD_DEFAULT, "omp_set_max_active_levels")))
        setLevels(0);
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

QString textAt(const tesseract::ResultIterator &results, PageIteratorLevel level)
{
    const std::unique_ptr<char[]> text(results.GetUTF8Text(level));
    return text ? QString::fromUtf8(text.get()).trimmed() : QString();
}

QRect boxAt(const tesseract::ResultIterator &results, PageIteratorLevel level)
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    if (!results.BoundingBox(level, &left, &top, &right, &bottom))
        return {};
    return {QPoint(left, top), QPoint(right - 1, bottom - 1)};
}

/// Letter by letter; the outermost ones reach to the word's own edges, which the engine knows better.
std::vector<QRect> unitBoxesAt(const tesseract::ResultIterator &word, const EngineWord &whole)
{
    std::vector<QRect> boxes;
    tesseract::ResultIterator symbol(word);
    do {
        const QString text = textAt(symbol, tesseract::RIL_SYMBOL);
        boxes.insert(boxes.end(), static_cast<std::size_t>(text.size()),
            boxAt(symbol, tesseract::RIL_SYMBOL) & whole.box);
    } while (!symbol.IsAtFinalElement(tesseract::RIL_WORD, tesseract::RIL_SYMBOL)
        && symbol.Next(tesseract::RIL_SYMBOL));
    if (boxes.size() != static_cast<std::size_t>(whole.text.size()))
        return std::vector<QRect>(static_cast<std::size_t>(whole.text.size()), whole.box);
    boxes.front().setLeft(whole.box.left());
    boxes.back().setRight(whole.box.right());
    return boxes;
}

std::vector<EngineLine> linesOf(tesseract::TessBaseAPI &api)
{
    std::vector<EngineLine> lines;
    const std::unique_ptr<tesseract::ResultIterator> results(api.GetIterator());
    if (!results)
        return lines;
    do {
        if (results->IsAtBeginningOf(tesseract::RIL_TEXTLINE) || lines.empty())
            lines.emplace_back();
        EngineWord word{textAt(*results, tesseract::RIL_WORD), boxAt(*results, tesseract::RIL_WORD), {}};
        if (word.text.isEmpty() || !word.box.isValid()
            || results->Confidence(tesseract::RIL_WORD) < leastConfidence)
            continue;
        word.unitBoxes = unitBoxesAt(*results, word);
        lines.back().push_back(std::move(word));
    } while (results->Next(tesseract::RIL_WORD));
    std::erase_if(lines, [](const EngineLine &line) { return line.empty(); });
    return lines;
}

} // namespace

TesseractEngine::TesseractEngine() = default;
TesseractEngine::~TesseractEngine() = default;

bool TesseractEngine::load()
{
    if (m_api)
        return true;
    useOneThread();
    auto api = std::make_unique<tesseract::TessBaseAPI>();
    api->SetVariable("debug_file", "/dev/null");
    if (api->Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY) != 0)
        return false;
    // Columns, labels and captions stand side by side on a screen; any other mode reads them as one line.
    api->SetPageSegMode(tesseract::PSM_SPARSE_TEXT);
    m_api = std::move(api);
    return true;
}

Recognition TesseractEngine::read(const Picture &picture, RecognitionStyle style, const std::stop_token &stop,
    const std::stop_token &ending)
{
    const Stops stops{stop, ending};
    Recognition recognition;
    if (!picture.isValid() || isStopped(const_cast<Stops *>(&stops), 0))
        return recognition;
    if (!load()) {
        recognition.failure = QStringLiteral("没有找到英文识别数据，请安装 tesseract-ocr-eng");
        return recognition;
    }
    const GreyPicture grey = prepared(picture, style);
    m_api->SetImage(grey.pixels.data(), grey.width, grey.height, 1, grey.width);
    m_api->SetSourceResolution(static_cast<int>(pointsPerInch * picture.scale * enlargement(picture)));
    tesseract::ETEXT_DESC monitor;
    monitor.cancel = isStopped;
    monitor.cancel_this = const_cast<Stops *>(&stops);
    if (m_api->Recognize(&monitor) == 0)
        for (EngineLine &line : linesOf(*m_api)) {
            mendPronouns(line);
            recognition.lines.append(recognisedLine(line, {grey.width, grey.height}));
        }
    m_api->Clear(); // nothing of the picture is kept
    return recognition;
}

} // namespace nimbrelle
