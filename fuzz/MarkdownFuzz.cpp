#include "Texts.h"
#include "frame/InlineMarkdown.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

// Whether `part` is left of `whole` when some units are taken out.
bool isWithin(const QString &part, const QString &whole)
{
    auto at = whole.begin();
    return std::ranges::all_of(part, [&](QChar unit) {
        at = std::find(at, whole.end(), unit);
        return at++ != whole.end();
    });
}

} // namespace

/// What is shown is the text without marks; nothing is added, turned round or styled as its neighbour.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QList<StyledRun> runs = inlineMarkdown(text);
    QString shown;
    for (qsizetype i = 0; i < runs.size(); ++i) {
        require(!runs[i].text.isEmpty());
        require(i == 0 || runs[i].style != runs[i - 1].style);
        shown += runs[i].text;
    }
    require(isWithin(shown, text));
    const bool hasMarks =
        std::ranges::any_of(text, [](QChar c) { return QStringView(u"*_~`[]\\").contains(c); });
    require(hasMarks || shown == text);
    return 0;
}
