#include "coach/FactPieces.h"
#include "coach/FactTexts.h"
#include "frame/AppConfig.h"
#include "frame/DayKey.h"

#include <QSet>

#include <algorithm>

namespace nimbrelle::facts {

using namespace Qt::StringLiterals;

namespace {

using Words = QList<const WordEntry *>;

template <class Condition> Words wordsWhere(const QList<WordEntry> &words, Condition condition)
{
    Words wanted;
    for (const WordEntry &word : words) {
        if (condition(word))
            wanted.append(&word);
    }
    return wanted;
}

/// The heading with the first `most` headwords behind it, if there are any.
QStringList listed(const QString &heading, const Words &words, qsizetype most)
{
    if (words.isEmpty())
        return {};
    QStringList headwords;
    for (const WordEntry *word : words.mid(0, most))
        headwords.append(word->headword);
    return {heading + headwords.join(u", "_s)};
}

QStringList listed(const QString &heading, const Words &words)
{
    return listed(heading, words, words.size());
}

auto isInStage(Stage stage)
{
    return [stage](const WordEntry &word) { return word.stage == stage; };
}

QString newWordLine(const WordEntry &word)
{
    const Example *example = sentenceOf(word);
    QString line = u"- "_s + DayKey::string(word.createdAt) + u' ' + word.headword + u"（"_s + word.pos + u' '
        + word.meaningZh + registerSuffix(word) + u"）"_s;
    if (const QString place = placeOf(example); !place.isEmpty())
        line += u" 来自 "_s + place;
    if (example && !example->isGenerated && !example->sentence.isEmpty())
        line += u"："_s + beginning(example->sentence);
    return line;
}

} // namespace

QStringList interests(const QStringList &topInterests)
{
    QStringList kept;
    QSet<QString> seen;
    for (const QString &interest : topInterests) {
        const QString folded = interest.toLower();
        if (interest == u"常拼"_s
            || seen.contains(folded)) // a word put on the always-spell list has no source
            continue;
        seen.insert(folded);
        kept.append(interest);
    }
    if (kept.isEmpty())
        return {};
    return {u"常看的地方和页面："_s + kept.join(u'；')};
}

QStringList newWords(const QList<WordEntry> &words, Timestamp now)
{
    constexpr std::chrono::seconds week{604'800};
    Words fresh =
        wordsWhere(words, [from = now - week](const WordEntry &word) { return word.createdAt >= from; });
    std::stable_sort(fresh.begin(), fresh.end(),
        [](const WordEntry *a, const WordEntry *b) { return a->createdAt > b->createdAt; });
    QStringList lines;
    for (const WordEntry *word : fresh.mid(0, 40))
        lines.append(newWordLine(*word));
    if (!lines.isEmpty())
        lines.prepend(u"\n最近 7 天新存的词（新的在前），后面是在哪里遇到的、原句："_s);
    return lines;
}

QStringList stageCounts(const QList<WordEntry> &words, const AppConfig &config, Timestamp now)
{
    std::array<qsizetype, caseCount<DisplayStage>> counts{};
    for (const WordEntry &word : words)
        ++counts[static_cast<std::size_t>(word.displayStage(config, now))];
    QStringList stages;
    for (const DisplayStage stage : allCases<DisplayStage>())
        stages.append(label(stage) + u' ' + QString::number(counts[static_cast<std::size_t>(stage)]));
    return {u"\n单词本一共 "_s + QString::number(words.size()) + u" 个词："_s + stages.join(u'、')
        + u"。「在学」名额 "_s + QString::number(config.learningSlots)
        + u" 个（只有在学和掌握的词会复习）"_s};
}

QStringList learningWords(const QList<WordEntry> &words)
{
    Words learning = wordsWhere(words, isInStage(Stage::learning));
    std::stable_sort(learning.begin(), learning.end(),
        [](const WordEntry *a, const WordEntry *b) { return a->lapses() > b->lapses(); });
    QStringList lines;
    for (const WordEntry *word : std::as_const(learning))
        lines.append(u"- "_s + describe(*word));
    if (!lines.isEmpty())
        lines.prepend(u"「在学」的词："_s);
    return lines;
}

QStringList hardWords(const QList<WordEntry> &words, qint64 leechThreshold)
{
    return listed(u"难啃的词（忘了 "_s + QString::number(leechThreshold) + u" 次以上）："_s,
        wordsWhere(
            words, [leechThreshold](const WordEntry &word) { return word.lapses() >= leechThreshold; }));
}

QStringList restingWords(const QList<WordEntry> &words)
{
    return listed(u"正在休息、暂时不考的词："_s, wordsWhere(words, isInStage(Stage::resting)));
}

QStringList masteredWords(const QList<WordEntry> &words)
{
    return listed(u"已经掌握的词："_s, wordsWhere(words, isInStage(Stage::mastered)), 40);
}

QStringList spellPracticeWords(const QList<WordEntry> &words, qint64 count)
{
    return listed(u"「常拼」（想练拼写的名字、品牌等）有 "_s + QString::number(count) + u" 个："_s,
        wordsWhere(words, [](const WordEntry &word) { return word.isSpellPractice(); }), 15);
}

} // namespace nimbrelle::facts
