#include "wordbook/WordList.h"

#include "frame/AppConfig.h"
#include "frame/Text.h"

#include <QHash>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

RowMarks stageMark(DisplayStage stage)
{
    switch (stage) {
    case DisplayStage::learning:
        return RowMark::learning;
    case DisplayStage::resting:
        return RowMark::resting;
    case DisplayStage::mastered:
        return RowMark::mastered;
    case DisplayStage::dormant:
        return RowMark::dormant;
    case DisplayStage::seen:
        return {};
    }
    Q_UNREACHABLE();
}

RowMarks marksOf(const WordEntry &entry, DisplayStage stage)
{
    RowMarks marks = stageMark(stage);
    marks.setFlag(RowMark::wanted, entry.isWanted());
    marks.setFlag(RowMark::spelled, entry.isSpellPractice());
    marks.setFlag(RowMark::noted, entry.notes && !entry.notes->isEmpty());
    return marks;
}

bool passesSearch(const WordEntry &entry, const QString &query)
{
    return entry.headword.toLower().contains(query.toLower()) || entry.meaningZh.contains(query);
}

ListRow heading(const QString &title)
{
    return {.key = {}, .title = title};
}

template <class Key, class Encounter>
QHash<Key, qsizetype> countsOf(const QList<Encounter> &encounters, Key Encounter::*key)
{
    QHash<Key, qsizetype> counts;
    for (const Encounter &met : encounters)
        ++counts[met.*key];
    return counts;
}

ListRow unlockableRow(const RowKey &key, const QString &title, qsizetype count)
{
    return {.key = key,
        .title = title,
        .marks = count > 0 ? RowMarks(RowMark::unlocked) : RowMarks(),
        .isMuted = count == 0};
}

bool holds(const QString &text, const QString &lowered)
{
    return text.toLower().contains(lowered);
}

} // namespace

QString label(WordListTab tab)
{
    switch (tab) {
    case WordListTab::words:
        return u"生词"_s;
    case WordListTab::grammar:
        return u"语法"_s;
    case WordListTab::affixes:
        return u"词缀"_s;
    case WordListTab::notes:
        return u"笔记"_s;
    }
    Q_UNREACHABLE();
}

QString searchPlaceholder(WordListTab tab)
{
    switch (tab) {
    case WordListTab::words:
    case WordListTab::grammar: // of the sentences that were met
        return u"搜索单词或中文"_s;
    case WordListTab::notes:
        return u"搜索笔记"_s;
    case WordListTab::affixes:
        return {};
    }
    Q_UNREACHABLE();
}

QString nothingChosenText(WordListTab tab)
{
    switch (tab) {
    case WordListTab::words:
        return u"选一个词查看详情"_s;
    case WordListTab::grammar:
        return u"选一个语法点查看"_s;
    case WordListTab::affixes:
        return u"选一个词缀查看"_s;
    case WordListTab::notes:
        return u"选一条笔记查看"_s;
    }
    Q_UNREACHABLE();
}

QList<qsizetype> filtered(
    const QList<WordEntry> &entries, const WordFilter &filter, const AppConfig &config, Timestamp now)
{
    const QString query = trimmedSpace(filter.search);
    QList<qsizetype> passing;
    for (qsizetype i = 0; i < entries.size(); ++i) {
        if ((query.isEmpty() || passesSearch(entries[i], query))
            && (!filter.stage || entries[i].displayStage(config, now) == *filter.stage))
            passing.append(i);
    }
    return passing;
}

QList<AINote> filteredNotes(const QList<AINote> &notes, const QString &search)
{
    const QString lowered = search.toLower();
    QList<AINote> passing;
    for (const AINote &note : notes)
        if (lowered.isEmpty() || holds(note.original, lowered) || holds(note.answer, lowered))
            passing.append(note);
    return passing;
}

QList<GrammarEncounter> filteredEncounters(
    const QList<GrammarEncounter> &encounters, GrammarPoint point, const QString &search)
{
    const QString lowered = trimmedSpace(search).toLower();
    QList<GrammarEncounter> passing;
    for (const GrammarEncounter &met : encounters)
        if (met.point == point
            && (lowered.isEmpty() || holds(met.sentence, lowered) || holds(met.headword, lowered)
                || holds(met.sentenceZh.value_or(QString()), lowered)))
            passing.append(met);
    return passing;
}

QList<AffixEncounter> encountersOf(const QList<AffixEncounter> &encounters, Affix affix)
{
    QList<AffixEncounter> its;
    for (const AffixEncounter &met : encounters)
        if (met.affix == affix)
            its.append(met);
    return its;
}

QString wordHeader(qint64 learning, qsizetype total)
{
    return u"在学 %1 · 共 %2 个"_s.arg(learning).arg(total);
}

QString label(RowMark mark)
{
    switch (mark) {
    case RowMark::wanted:
        return u"想学"_s;
    case RowMark::spelled:
        return u"常拼"_s;
    case RowMark::noted:
        return u"AI 解释"_s;
    case RowMark::learning:
        return label(DisplayStage::learning);
    case RowMark::resting:
        return label(DisplayStage::resting);
    case RowMark::mastered:
        return label(DisplayStage::mastered);
    case RowMark::dormant:
        return label(DisplayStage::dormant);
    case RowMark::unlocked:
        return u"已解锁"_s;
    }
    Q_UNREACHABLE();
}

QList<ListRow> wordRows(
    const QList<WordEntry> &entries, const WordFilter &filter, const AppConfig &config, Timestamp now)
{
    QList<ListRow> rows;
    for (const qsizetype i : filtered(entries, filter, config, now)) {
        const WordEntry &entry = entries[i];
        rows.append({.key = entry.id,
            .title = entry.headword,
            .marks = marksOf(entry, entry.displayStage(config, now))});
    }
    return rows;
}

QList<ListRow> grammarRows(const QList<GrammarEncounter> &encounters)
{
    const auto counts = countsOf(encounters, &GrammarEncounter::point);
    QList<ListRow> rows{heading(u"已解锁 %1"_s.arg(counts.size()))};
    for (const GrammarPoint point : allCases<GrammarPoint>())
        rows.append(unlockableRow(point, label(point), counts.value(point)));
    return rows;
}

QList<ListRow> affixRows(const QList<AffixEncounter> &encounters)
{
    const auto counts = countsOf(encounters, &AffixEncounter::affix);
    QList<ListRow> rows{heading(u"已解锁 %1 · 前缀"_s.arg(counts.size()))};
    for (const Affix affix : allCases<Affix>()) {
        if (isSuffix(affix) && !isSuffix(static_cast<Affix>(static_cast<int>(affix) - 1)))
            rows.append(heading(u"后缀"_s));
        ListRow row = unlockableRow(affix, displayForm(affix), counts.value(affix));
        row.count = counts.value(affix);
        rows.append(row);
    }
    return rows;
}

ListRow noteRow(const AINote &note)
{
    const QString question = note.question.simplified(), original = note.original.simplified();
    if (question.isEmpty())
        return {.key = note.id, .title = original};
    return {.key = note.id, .title = question, .detail = original};
}

QList<ListRow> noteRows(const QList<AINote> &notes, const QString &search)
{
    QList<ListRow> rows;
    for (const AINote &note : filteredNotes(notes, search))
        rows.append(noteRow(note));
    return rows;
}

QString emptyListText(WordListTab tab, bool isFiltered)
{
    if (isFiltered)
        return u"没有找到"_s;
    if (tab == WordListTab::words)
        return u"还没有保存的词。\n去网页上划一个英文单词试试，\n或者点右上角的 + 手动添加。"_s;
    if (tab == WordListTab::notes)
        return u"还没有句子笔记。\n框选翻译后点「为什么这么用？」，\n觉得解释有用就点「存为句子笔记」。"_s;
    return {};
}

} // namespace nimbrelle
