#include "Texts.h"
#include "shell/MenuBarText.h"

using namespace nimbrelle;
using namespace nimbrelle::fuzz;

namespace {

// Without blanks and line breaks, which wrapping may exchange.
QStringList visible(const QString &text)
{
    QStringList letters = characters(text);
    letters.removeIf([](const QString &letter) {
        return letter == u" " || letter == u"\n" || letter == u"\r" || letter == u"\r\n";
    });
    return letters;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Texts texts(data, size);
    const QString sentence = texts.line(1);
    const qsizetype width = size > 0 ? 1 + data[size - 1] % 60 : MenuBarText::sentenceWrapWidth;
    const QString wrapped = MenuBarText::wrap(sentence, width);
    require(visible(wrapped) == visible(sentence));
    for (const QString &line : wrapped.split(u'\n'))
        require(characterCount(line) <= width);

    if (const auto range = MenuBarText::highlightRange(texts.word(), wrapped)) {
        require(range->length > 0);
        require(isBetweenCharacters(wrapped, range->start));
        require(isBetweenCharacters(wrapped, range->start + range->length));
    }
    require(characterCount(MenuBarText::title(texts.line(0))) <= 16);
    return 0;
}
