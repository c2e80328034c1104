#include "review/SpellingScaffold.h"

#include "frame/RecordCodec.h"
#include "review/Letters.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle::SpellingScaffold {

namespace {

struct Group {
    qsizetype first = 0;
    qsizetype last = 0;
};

bool isOneOf(QStringView set, const QString &letter)
{
    const QString lower = Letters::folded(letter);
    return lower.size() == 1 && set.contains(lower[0]);
}

bool isLetter(const QString &character)
{
    const auto codePoints = character.toUcs4();
    return !codePoints.isEmpty() && QChar::isLetter(codePoints.first());
}

bool isVowelOrFirstOfDouble(const QStringList &letters, qsizetype i)
{
    return isOneOf(u"aeiouy", letters[i])
        || (i + 1 < letters.size() && Letters::isSame(letters[i], letters[i + 1]));
}

QList<qsizetype> blankCandidates(const QStringList &letters)
{
    QList<qsizetype> all, preferred;
    for (qsizetype i = 1; i < letters.size(); ++i) {
        if (!isLetter(letters[i]))
            continue;
        all.append(i);
        if (isVowelOrFirstOfDouble(letters, i))
            preferred.append(i);
    }
    return preferred.isEmpty() ? all : preferred;
}

QList<Group> vowelGroups(const QStringList &letters)
{
    QList<Group> groups;
    for (qsizetype i = 0; i < letters.size(); ++i) {
        if (!isOneOf(i == 0 ? QStringView(u"aeiou") : QStringView(u"aeiouy"), letters[i]))
            continue;
        if (!groups.isEmpty() && groups.last().last == i - 1)
            groups.last().last = i;
        else
            groups.append({.first = i, .last = i});
    }
    return groups;
}

void dropSilentE(QList<Group> &groups, const QStringList &letters)
{
    const Group last = groups.last();
    if (last.first == last.last && last.last == letters.size() - 1 && isOneOf(u"e", letters.last()))
        groups.removeLast();
}

// A single consonant goes to the syllable behind it; of several, the first stays in front.
QList<qsizetype> cuts(const QStringList &letters)
{
    QList<Group> groups = vowelGroups(letters);
    if (groups.size() < 2)
        return {};
    dropSilentE(groups, letters);
    QList<qsizetype> result;
    for (qsizetype i = 1; i < groups.size(); ++i) {
        const qsizetype consonants = groups[i].first - groups[i - 1].last - 1;
        result.append(groups[i - 1].last + (consonants > 1 ? 2 : 1));
    }
    return result;
}

QStringList syllablesOf(const QStringList &letters)
{
    constexpr qsizetype shortest = 4;
    if (letters.size() < shortest)
        return {letters.join(QString())};
    QStringList pieces;
    qsizetype from = 0;
    for (const qsizetype cut : cuts(letters)) {
        if (cut <= from || cut >= letters.size())
            continue;
        pieces.append(letters.mid(from, cut - from).join(QString()));
        from = cut;
    }
    pieces.append(letters.mid(from).join(QString()));
    return pieces;
}

bool isSpelledAt(const QStringList &letters, qsizetype from, const QString &spelling)
{
    for (qsizetype i = 0; i < spelling.size(); ++i) {
        if (Letters::folded(letters[from + i]) != spelling[i])
            return false;
    }
    return true;
}

// How many characters of `letters` the affix takes at its end of the word; 0 if it isn't there or would leave
// fewer than three.
qsizetype lengthOf(Affix affix, const QStringList &letters)
{
    for (const QString &spelling : spellings(affix)) {
        if (spelling.size() + 2 >= letters.size())
            continue;
        if (isSpelledAt(letters, isSuffix(affix) ? letters.size() - spelling.size() : 0, spelling))
            return spelling.size();
    }
    return 0;
}

QList<Chunk> takePrefixes(QStringList &letters, const QList<Affix> &affixes)
{
    QList<Chunk> taken;
    for (const Affix affix : affixes) {
        const qsizetype length = isSuffix(affix) ? 0 : lengthOf(affix, letters);
        if (length == 0)
            continue;
        taken.append({.text = letters.mid(0, length).join(QString()), .isAffix = true});
        letters = letters.mid(length);
    }
    return taken;
}

QList<Chunk> takeSuffixes(QStringList &letters, const QList<Affix> &affixes)
{
    QList<Chunk> taken;
    for (const Affix affix : affixes) {
        const qsizetype length = isSuffix(affix) ? lengthOf(affix, letters) : 0;
        if (length == 0)
            continue;
        taken.prepend({letters.mid(letters.size() - length).join(QString()), true});
        letters = letters.mid(0, letters.size() - length);
    }
    return taken;
}

// What the AI names may repeat itself, but an affix is taken once.
QList<Affix> withoutRepeats(const QList<Affix> &affixes)
{
    QList<Affix> result;
    for (const Affix affix : affixes) {
        if (!result.contains(affix))
            result.append(affix);
    }
    return result;
}

QList<Chunk> plainChunks(const QStringList &texts)
{
    QList<Chunk> result;
    for (const QString &text : texts)
        result.append({.text = text});
    return result;
}

// The longest that may be hidden, of equals the last.
qsizetype hiddenChunk(const QList<Chunk> &chunks)
{
    QSet<QString> affixTexts;
    for (const Chunk &chunk : chunks) {
        if (chunk.isAffix)
            affixTexts.insert(chunk.text);
    }
    const bool areAllAffixes =
        std::all_of(chunks.begin(), chunks.end(), [](const Chunk &chunk) { return chunk.isAffix; });
    qsizetype hidden = 0, longest = 0;
    for (qsizetype i = 0; i < chunks.size(); ++i) {
        const qsizetype length = characterCount(chunks[i].text);
        if (length < longest || (affixTexts.contains(chunks[i].text) && !areAllAffixes))
            continue;
        hidden = i;
        longest = length;
    }
    return hidden;
}

} // namespace

QString fillPattern(const QString &word, qint64 blanks)
{
    QStringList letters = characters(word);
    const QList<qsizetype> candidates = blankCandidates(letters);
    const qsizetype count = std::clamp<qint64>(blanks, 0, candidates.size());
    for (qsizetype k = 1; k <= count; ++k)
        letters[candidates[candidates.size() * k / (count + 1)]] = Letters::gap;
    return letters.join(QString());
}

QStringList syllables(const QString &word)
{
    return syllablesOf(characters(word));
}

QList<Chunk> chunks(const QString &word, const QList<Affix> &affixes)
{
    QStringList letters = characters(word);
    if (letters.contains(Letters::blank)) {
        QStringList words;
        for (const QStringList &piece : Letters::splitAtBlanks(letters))
            words.append(piece.join(QString()));
        return plainChunks(words);
    }
    const QList<Affix> tried = withoutRepeats(affixes);
    const QList<Chunk> prefixes = takePrefixes(letters, tried);
    const QList<Chunk> suffixes = takeSuffixes(letters, tried);
    return prefixes + plainChunks(syllablesOf(letters)) + suffixes;
}

std::optional<QString> chunkPattern(const QString &word, const QList<Affix> &affixes)
{
    const QList<Chunk> all = chunks(word, affixes);
    if (all.size() < 2)
        return std::nullopt;
    QStringList texts;
    for (const Chunk &chunk : all)
        texts.append(chunk.text);
    QString &hidden = texts[hiddenChunk(all)];
    hidden = Letters::gap.repeated(characterCount(hidden));
    return texts.join(u" · "_s);
}

QStringList spellings(Affix affix)
{
    switch (affix) {
    case Affix::in:
        return {u"in"_s, u"im"_s, u"il"_s, u"ir"_s};
    case Affix::tion:
        return {u"ation"_s, u"tion"_s, u"sion"_s};
    case Affix::ity:
        return {u"ity"_s, u"ty"_s};
    case Affix::er:
        return {u"er"_s, u"or"_s};
    case Affix::able:
        return {u"able"_s, u"ible"_s};
    case Affix::ous:
        return {u"ious"_s, u"ous"_s};
    case Affix::al:
        return {u"ial"_s, u"al"_s};
    case Affix::ize:
        return {u"ize"_s, u"ise"_s};
    default:
        return {caseText(affix)};
    }
}

} // namespace nimbrelle::SpellingScaffold
