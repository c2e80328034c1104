#include "notebook/Encounters.h"

#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "frame/Saturate.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"

#include <algorithm>

namespace nimbrelle::Encounters {

namespace {

bool isEmptyOrAbsent(const std::optional<QString> &text)
{
    return !text || text->isEmpty();
}

QString surfaceOf(const Explanation &explanation)
{
    return isEmptyOrAbsent(explanation.surfaceForm) ? explanation.headword : *explanation.surfaceForm;
}

/// What is stored first for a kind stays.
void addInflections(WordEntry &word, const Explanation &explanation)
{
    auto inflections = word.inflections.value_or(QMap<QString, QString>());
    for (const auto &[kind, form] : explanation.allForms()) {
        if (!inflections.contains(caseText(kind)))
            inflections.insert(caseText(kind), form);
    }
    if (!inflections.isEmpty())
        word.inflections = inflections;
}

FormRecord newForm(const WordEntry &word, FormKind kind, const Explanation &explanation, Timestamp now)
{
    const auto inflections = word.inflections.value_or(QMap<QString, QString>());
    return {.kind = kind,
        .form = inflections.value(caseText(kind), surfaceOf(explanation)),
        .firstSeenAt = now,
        .sentence = explanation.sentence};
}

bool holds(const QList<AffixEncounter> &encounters, Affix affix, const QString &loweredHeadword)
{
    return std::ranges::any_of(encounters, [&](const AffixEncounter &met) {
        return met.affix == affix && met.headword.toLower() == loweredHeadword;
    });
}

} // namespace

Example newExample(const Explanation &explanation, const PageSource &source, Timestamp now)
{
    return {.sentence = explanation.sentence.value_or(QString()),
        .sentenceZh = explanation.sentenceZh.value_or(QString()),
        .meaningZh = explanation.meaningZh,
        .isGenerated = explanation.sentenceIsExample == true,
        .sourceApp = source.app,
        .sourceURL = source.url,
        .sourceTitle = source.title,
        .addedAt = now};
}

WordEntry newWord(const Explanation &explanation, const Example &example)
{
    WordEntry word{.headword = explanation.headword,
        .phonetic = explanation.phonetic.value_or(QString()),
        .pos = explanation.pos.value_or(QString()),
        .meaningZh = explanation.meaningZh,
        .definitionEn = explanation.definitionEn.value_or(QString()),
        .register_ = registerFrom(explanation.register_),
        .registerNoteZh = explanation.registerNoteZh.value_or(QString()),
        .createdAt = example.addedAt,
        .lastLookupAt = example.addedAt};
    addExample(word, example);
    return word;
}

bool addExample(WordEntry &word, const Example &example)
{
    const bool isKnown =
        std::ranges::find(word.examples, example.sentence, &Example::sentence) != word.examples.end();
    if (example.sentence.isEmpty() || isKnown)
        return false;
    word.examples.append(example);
    return true;
}

void mark(WordEntry &word, const PageSource &source, Timestamp now)
{
    QStringList days = word.days();
    const QString today = DayKey::string(now);
    if (!days.contains(today))
        days.append(today);
    word.encounterDays = days;

    const auto key = source.sourceKey();
    if (!key)
        return;
    QStringList keys = word.sourceKeys.value_or(QStringList());
    if (!keys.contains(*key))
        keys.append(*key);
    word.sourceKeys = keys;
}

void recordForm(WordEntry &word, const Explanation &explanation, Timestamp now, Unlock &unlock)
{
    addInflections(word, explanation);
    const FormKind kind = looseFormKind(explanation.formKind).value_or(FormKind::base);
    auto forms = word.forms.value_or(QList<FormRecord>());
    const auto met = std::ranges::find(forms, kind, &FormRecord::kind);
    if (met != forms.end()) {
        met->count = saturatingAdd(met->count, 1);
    } else {
        unlock.newForm = newForm(word, kind, explanation, now);
        forms.append(*unlock.newForm);
    }
    word.forms = forms;

    const qsizetype slotCount = word.formSlots().size();
    if (slotCount >= 2)
        unlock.formProgress = Progress{.met = forms.size(), .all = slotCount};
}

std::optional<GrammarEncounter> newGrammar(const QList<GrammarEncounter> &known,
    const Explanation &explanation, const PageSource &source, Timestamp now)
{
    const auto point = looseGrammarPoint(explanation.grammar);
    if (!point || isEmptyOrAbsent(explanation.sentence) || explanation.sentenceIsExample == true)
        return std::nullopt;
    const bool isKnown = std::ranges::any_of(known, [&](const GrammarEncounter &met) {
        return met.point == *point && met.sentence == *explanation.sentence;
    });
    if (isKnown)
        return std::nullopt;
    return GrammarEncounter{.point = *point,
        .headword = explanation.headword,
        .surface = surfaceOf(explanation),
        .sentence = *explanation.sentence,
        .sentenceZh = explanation.sentenceZh,
        .noteZh = explanation.grammarNoteZh,
        .sourceApp = source.app,
        .sourceURL = source.url,
        .sourceTitle = source.title,
        .addedAt = now};
}

QList<AffixEncounter> newAffixes(
    const QList<AffixEncounter> &known, const Explanation &explanation, Timestamp now)
{
    const QString headword = explanation.headword.toLower();
    QList<AffixEncounter> fresh;
    for (const Affix affix : explanation.affixList()) {
        if (!holds(known, affix, headword) && !holds(fresh, affix, headword))
            fresh.append({.affix = affix,
                .headword = explanation.headword,
                .root = explanation.familyRoot,
                .sentence = explanation.sentence,
                .addedAt = now});
    }
    return fresh;
}

} // namespace nimbrelle::Encounters
