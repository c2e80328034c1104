#include "export/GrowthReport.h"

#include "export/GrowthHistory.h"
#include "frame/Text.h"
#include "frame/WordPattern.h"
#include "notebook/PageSource.h"

#include <QSet>

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono;

constexpr qsizetype shownPlaces = 12;
constexpr qsizetype shownSentences = 6;
constexpr days roundTheDay{7};

qint64 wordsGone(const GrowthHistory &history)
{
    return std::ranges::count_if(history.words(), [](const GrowthHistory::Word &word) {
        return !word.entry && std::ranges::any_of(word.events, [](const Activity *activity) {
            return activity->kind == LogKind::save;
        });
    });
}

bool isPlace(const QString &key)
{
    // A word put on the always-spell list or added by hand was read nowhere.
    return !key.isEmpty() && key != u"常拼"_s && key != u"手动添加"_s;
}

local_days sameDay(local_days day, years distance)
{
    const year_month_day date = year_month_day{day} + distance;
    return local_days{date.ok() ? date : date.year() / date.month() / last};
}

QList<MarkedPiece> marked(const QString &sentence, const WordEntry &word)
{
    QList<MarkedPiece> pieces;
    qsizetype end = 0;
    for (const TextRange &range : WordPattern::wholeOccurrences(sentence, word.formTexts())) {
        pieces.append({.text = sentence.sliced(end, range.start - end)});
        pieces.append({.text = sentence.sliced(range.start, range.length), .isWord = true});
        end = range.start + range.length;
    }
    pieces.append({.text = sentence.sliced(end)});
    pieces.removeIf([](const MarkedPiece &piece) { return piece.text.isEmpty(); });
    return pieces;
}

QString placeOf(const std::optional<QString> &app, const std::optional<QString> &url)
{
    const QString key = PageSource{.app = app, .url = url, .title = {}}.sourceKey().value_or(QString());
    return isPlace(key) ? key : QString();
}

/// A sentence that may be shown, before anything is looked for in it.
struct Candidate {
    local_days day;
    const WordEntry *word = nullptr;
    const Example *example = nullptr;
    const AINote *note = nullptr;

    PastSentence shown() const
    {
        if (note)
            return {.day = day,
                .sentence = {{.text = note->original}},
                .translation = note->translation.value_or(QString()),
                .headword = {},
                .meaning = {},
                .place = placeOf(note->sourceApp, note->sourceURL)};
        return {.day = day,
            .sentence = marked(example->sentence, *word),
            .translation = example->sentenceZh,
            .headword = word->headword,
            .meaning = example->meaningZh.isEmpty() ? word->meaningZh : example->meaningZh,
            .place = placeOf(example->sourceApp, example->sourceURL)};
    }
};

QList<Candidate> metSentences(const GrowthHistory &history, const QList<AINote> &sentenceNotes)
{
    QList<Candidate> all;
    for (const GrowthHistory::Word &word : history.words()) {
        if (!word.entry)
            continue;
        for (const Example &example : word.entry->examples) {
            if (!example.isGenerated && !example.sentence.isEmpty())
                all.append({.day = history.dayOf(example.addedAt), .word = word.entry, .example = &example});
        }
    }
    for (const AINote &note : sentenceNotes) {
        if (!note.original.isEmpty())
            all.append({.day = history.dayOf(note.addedAt), .note = &note});
    }
    return all;
}

} // namespace

GrowthCollection growth::collection(const GrowthSource &source)
{
    GrowthCollection result;
    QMap<FormKind, qint64> forms;
    for (const WordEntry &word : source.words) {
        for (const FormSlot &slot : word.formSlots()) {
            ++result.formsKnown;
            if (slot.record)
                ++forms[slot.kind];
        }
    }
    for (const auto &[kind, met] : forms.asKeyValueRange()) {
        result.forms.append({.kind = kind, .met = met});
        result.formsMet += met;
    }

    QMap<Affix, QStringList> affixes;
    for (auto met = source.affixes.crbegin(); met != source.affixes.crend();
         ++met) { // they hold the newest first
        if (!affixes[met->affix].contains(met->headword, Qt::CaseInsensitive))
            affixes[met->affix].append(met->headword);
    }
    for (const auto &[affix, words] : affixes.asKeyValueRange())
        result.affixes.append({.affix = affix, .words = words});

    QMap<GrammarPoint, qint64> grammar;
    for (const GrammarEncounter &met : source.grammar)
        ++grammar[met.point];
    for (const auto &[point, met] : grammar.asKeyValueRange())
        result.grammar.append({.point = point, .met = met});
    return result;
}

GrowthSources growth::sources(const GrowthHistory &history)
{
    QHash<QString, qint64> words;
    for (const GrowthHistory::Word &word : history.words()) {
        QSet<QString> places;
        for (const Activity *activity : word.events) {
            if (activity->kind == LogKind::save || activity->kind == LogKind::lookup)
                places.insert(activity->detail);
        }
        for (const QString &key : word.entry ? word.entry->sourceKeys.value_or(QStringList()) : QStringList())
            places.insert(key);
        for (const QString &place : std::as_const(places)) {
            if (isPlace(place))
                ++words[place];
        }
    }
    GrowthSources result;
    for (const auto &[name, count] : words.asKeyValueRange())
        result.places.append({.name = name, .words = count});
    std::ranges::sort(result.places, [](const GrowthSources::Place &a, const GrowthSources::Place &b) {
        return a.words != b.words ? a.words > b.words : a.name < b.name;
    });
    result.others = std::max<qint64>(0, result.places.size() - shownPlaces);
    result.places.resize(std::min(result.places.size(), shownPlaces));
    return result;
}

GrowthMemories growth::memories(const GrowthHistory &history, const QList<AINote> &sentenceNotes)
{
    GrowthMemories result;
    QList<Candidate> all = metSentences(history, sentenceNotes);
    if (all.isEmpty())
        return result;
    const local_days then = sameDay(history.today(), years{-1});
    const local_days first = std::ranges::min_element(all, {}, &Candidate::day)->day;
    if (const local_days on = sameDay(first, years{1}); on > history.today())
        result.firstOn = on;
    const auto distance = [then](const Candidate &candidate) { return abs(candidate.day - then); };
    all.removeIf([&](const Candidate &candidate) { return distance(candidate) > roundTheDay; });
    std::ranges::stable_sort(all, {}, distance);
    all.resize(std::min(all.size(), shownSentences));
    std::ranges::stable_sort(all, {}, &Candidate::day);
    for (const Candidate &candidate : std::as_const(all))
        result.sentences.append(candidate.shown());
    return result;
}

GrowthReport makeGrowthReport(const GrowthSource &source, Timestamp now, const QTimeZone &zone)
{
    const GrowthHistory history(source, now, zone);
    GrowthReport report{.today = history.today(),
        .since = growth::since(history),
        .logSince = history.since(),
        .words = source.words.size(),
        .gone = wordsGone(history),
        .aheadOfTime = history.aheadOfTime(),
        .growth = growth::byMonth(history),
        .recall = growth::recall(history),
        .collection = growth::collection(source),
        .sources = growth::sources(history),
        .memories = growth::memories(history, source.sentenceNotes),
        .load = growth::load(source, now, zone)};
    for (const WordEntry &word : source.words)
        ++report.stages[static_cast<std::size_t>(word.displayStage(source.config, now))];
    return report;
}

} // namespace nimbrelle
