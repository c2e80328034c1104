#include "Texts.h"
#include "review/SpellingScaffold.h"

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace nimbrelle::fuzz;

namespace {

qsizetype countOfAll(const QStringList &pieces)
{
    qsizetype count = 0;
    for (const QString &piece : pieces)
        count += characterCount(piece);
    return count;
}

void checkBlanks(const QString &word, qint64 blanks)
{
    const QStringList before = characters(word);
    const QStringList after = characters(SpellingScaffold::fillPattern(word, blanks));
    require(before.size() == after.size());
    qsizetype changed = 0;
    for (qsizetype i = 0; i < before.size(); ++i) {
        changed += before[i] != after[i] ? 1 : 0;
        require(before[i] == after[i] || (i > 0 && after[i] == u"_"));
    }
    require(changed <= std::max<qint64>(blanks, 0));
}

void checkChunks(const QString &word, const QList<Affix> &affixes)
{
    QStringList texts;
    for (const SpellingScaffold::Chunk &chunk : SpellingScaffold::chunks(word, affixes))
        texts.append(chunk.text);
    if (!characters(word).contains(u" "_s))
        require(texts.join(QString()) == word && countOfAll(texts) == characterCount(word));
    require(SpellingScaffold::chunkPattern(word, affixes).has_value() == (texts.size() > 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Texts texts(data, size);
    const QString word = texts.line(0);
    QList<Affix> affixes;
    for (const QChar letter : texts.line(1))
        affixes.append(static_cast<Affix>(letter.unicode() % caseCount<Affix>));

    checkBlanks(word, texts.line(2).size() - 1);
    checkBlanks(word, 2);
    checkChunks(word, affixes);
    const QStringList syllables = SpellingScaffold::syllables(word);
    require(syllables.join(QString()) == word && countOfAll(syllables) == characterCount(word));
    require(word.isEmpty() || !syllables.contains(QString()));
    return 0;
}
