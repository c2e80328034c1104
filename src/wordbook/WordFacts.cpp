#include "wordbook/WordFacts.h"

#include "frame/AppConfig.h"
#include "frame/DayKey.h"
#include "notebook/WordStore.h"
#include "wordbook/WordList.h"

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString historyText(const WordEntry &entry)
{
    return u"查过 %1 次 · 在 %2 天里遇到 · %3 保存"_s.arg(entry.lookupCount)
        .arg(entry.days().size())
        .arg(DayKey::string(entry.createdAt));
}

QString reviewText(const WordEntry &entry, Timestamp now)
{
    if (!entry.review)
        return {};
    return u"下次复习：%1 · 复习过 %2 次"_s.arg(dayText(entry.review->due, now)).arg(entry.review->reps);
}

QString translationIn(const WordEntry &entry, const QString &sentence)
{
    const auto found = std::ranges::find(entry.examples, sentence, &Example::sentence);
    return found == entry.examples.cend() ? QString() : found->sentenceZh;
}

template <class Record> PageSource sourceOfRecord(const Record &record)
{
    return {.app = record.sourceApp, .url = record.sourceURL, .title = record.sourceTitle};
}

} // namespace

QList<StageAction> stageActions(const WordEntry &entry, bool hasRoom)
{
    using Kind = StageAction::Kind;
    QList<StageAction> actions;
    if (entry.stage != Stage::learning && entry.stage != Stage::mastered) {
        actions.append({.kind = Kind::want,
            .text = entry.isWanted() ? u"取消「想学」"_s : u"想学（排到最前）"_s,
            .turnsOn = !entry.isWanted()});
        actions.append({.kind = Kind::start, .text = u"现在就开始学"_s, .isEnabled = hasRoom});
    }
    if (entry.stage == Stage::learning)
        actions.append({.kind = Kind::rest, .text = u"先休息一周（让出名额）"_s});
    actions.append({.kind = Kind::spell,
        .text = entry.isSpellPractice() ? u"移出常拼"_s : u"加入常拼（多练拼写）"_s,
        .turnsOn = !entry.isSpellPractice()});
    return actions;
}

void perform(const StageAction &action, WordStore &words, const QUuid &id)
{
    switch (action.kind) {
    case StageAction::Kind::want:
        words.setWantToLearn(id, action.turnsOn);
        return;
    case StageAction::Kind::start:
        words.startLearning(id);
        return;
    case StageAction::Kind::rest:
        words.rest(id, WordChanges::restDays);
        return;
    case StageAction::Kind::spell:
        words.setSpellPractice(id, action.turnsOn);
        return;
    }
}

std::optional<WordFacts> wordFacts(
    const WordStore &words, const AppConfig &config, Timestamp now, const QUuid &id)
{
    const WordEntry *entry = words.find(id);
    if (!entry)
        return std::nullopt;
    WordFacts facts;
    facts.entry = *entry;
    facts.stage = entry->displayStage(config, now);
    facts.history = historyText(*entry);
    facts.reviews = reviewText(*entry, now);
    facts.isLeech = entry->lapses() >= config.leechThreshold;
    facts.actions = stageActions(*entry, words.learningCount() < config.learningSlots);
    for (const WordEntry &relative : words.family(*entry))
        facts.family.append({.id = relative.id, .headword = relative.headword});
    return facts;
}

GrammarFacts grammarFacts(const WordStore &words, GrammarPoint point, const QString &search)
{
    const QList<GrammarEncounter> &all = words.grammarEncounters();
    return {.point = point,
        .count = std::ranges::count(all, point, &GrammarEncounter::point),
        .encounters = filteredEncounters(all, point, search)};
}

AffixFacts affixFacts(const WordStore &words, Affix affix)
{
    AffixFacts facts{.affix = affix};
    for (const AffixEncounter &met : encountersOf(words.affixEncounters(), affix)) {
        AffixFacts::Meeting meeting{.encounter = met, .forms = {met.headword}};
        if (const WordEntry *entry = words.findHeadword(met.headword)) {
            meeting.sentenceZh = translationIn(*entry, met.sentence.value_or(QString()));
            meeting.forms = entry->formTexts();
        }
        facts.meetings.append(meeting);
    }
    return facts;
}

QString dayText(Timestamp day, Timestamp now)
{
    const QStringList parts = DayKey::string(day).split(u'-');
    const QString inYear = u"%1 月 %2 日"_s.arg(parts[1].toInt()).arg(parts[2].toInt());
    return DayKey::string(now).startsWith(parts[0] + u'-') ? inYear : parts[0] + u" 年 "_s + inYear;
}

QString noFamilyText(const WordEntry &entry)
{
    const QString root = entry.familyRoot.value_or(QString());
    return u"生词本里还没有同一家的词。遇到 "_s + (root.isEmpty() ? entry.headword : root)
        + u" 家族的其他词并保存，就会出现在这里。"_s;
}

QString meetingText(const FormSlot &slot)
{
    return slot.record ? u"遇到 %1 次"_s.arg(slot.record->count) : u"还没遇到"_s;
}

PageSource sourceOf(const Example &example)
{
    return sourceOfRecord(example);
}

PageSource sourceOf(const AINote &note)
{
    return sourceOfRecord(note);
}

PageSource sourceOf(const GrammarEncounter &encounter)
{
    return sourceOfRecord(encounter);
}

} // namespace nimbrelle
