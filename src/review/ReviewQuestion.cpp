#include "review/ReviewQuestion.h"

#include "frame/Text.h"
#include "frame/WordPattern.h"
#include "review/SpellingScaffold.h"

#include <algorithm>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

struct Cloze {
    QString sentence;
    QString found;
};

QStringList formsToFind(const WordEntry &entry)
{
    QStringList forms;
    for (const FormSlot &slot : entry.formSlots())
        forms.append(slot.form);
    forms.append(entry.headword);
    for (const FormRecord &record : entry.forms.value_or(QList<FormRecord>()))
        forms.append(record.form);
    return WordPattern::longestFirst(forms);
}

std::optional<Cloze> cloze(const QString &sentence, const WordEntry &entry)
{
    constexpr qsizetype shortestGap = 4;
    for (const QString &form : formsToFind(entry)) {
        const auto range = WordPattern::firstMatch(WordPattern::whole(form), sentence);
        if (!range)
            continue;
        const QString found = sentence.mid(range->start, range->length);
        const QString gap(std::max(characterCount(found), shortestGap), u'_');
        return Cloze{.sentence = QString(sentence).replace(range->start, range->length, gap), .found = found};
    }
    return std::nullopt;
}

template <class Wanted> std::optional<Example> lastExample(const WordEntry &entry, Wanted isWanted)
{
    const auto found = std::find_if(entry.examples.crbegin(), entry.examples.crend(), isWanted);
    return found == entry.examples.crend() ? std::nullopt : std::optional(*found);
}

ReviewQuestion question(const WordEntry &entry, QuestionType type)
{
    ReviewQuestion made{.id = QUuid::createUuid(), .entry = entry, .type = type, .answer = entry.headword};
    if (const auto example = ReviewQuestion::example(entry)) {
        made.sentence = example->sentence;
        made.sentenceZh = example->sentenceZh;
    }
    return made;
}

ReviewQuestion fillQuestion(const WordEntry &entry, qint64 blanks)
{
    ReviewQuestion made = question(entry, Spell{.mode = SpellMode::fill});
    made.scaffold = SpellingScaffold::fillPattern(entry.headword, blanks);
    return made;
}

ReviewQuestion chunkQuestion(const WordEntry &entry)
{
    const auto pattern =
        SpellingScaffold::chunkPattern(entry.headword, entry.affixes.value_or(QList<Affix>()));
    if (!pattern)
        return fillQuestion(entry, 2);
    ReviewQuestion made = question(entry, Spell{.mode = SpellMode::chunks});
    made.scaffold = pattern;
    return made;
}

// Without a sentence that holds the word, it is spelled from its meaning alone.
ReviewQuestion fullQuestion(const WordEntry &entry)
{
    ReviewQuestion made = question(entry, Spell{.mode = SpellMode::full});
    if (!made.sentence)
        return made;
    if (const auto blanked = cloze(*made.sentence, entry)) {
        made.clozeSentence = blanked->sentence;
        made.answer = blanked->found;
    }
    return made;
}

qint64 blanksFor(const QString &word)
{
    constexpr qsizetype longWord = 6;
    return characterCount(word) < longWord ? 1 : 2;
}

} // namespace

ReviewQuestion ReviewQuestion::make(const WordEntry &entry)
{
    return question(entry, Recognize{});
}

ReviewQuestion ReviewQuestion::spelling(const WordEntry &entry)
{
    const SpellMode mode = spellModeForLevel(entry.spellLevel.value_or(0));
    switch (mode) {
    case SpellMode::fill:
        return fillQuestion(entry, blanksFor(entry.headword));
    case SpellMode::chunks:
        return chunkQuestion(entry);
    case SpellMode::full:
        return fullQuestion(entry);
    case SpellMode::copy:
    case SpellMode::dictation:
        break;
    }
    return question(entry, Spell{.mode = mode});
}

std::optional<Example> ReviewQuestion::example(const WordEntry &entry)
{
    const auto hasText = [](const Example &example) { return !example.sentence.isEmpty(); };
    const auto met =
        lastExample(entry, [&](const Example &example) { return !example.isGenerated && hasText(example); });
    return met ? met : lastExample(entry, hasText);
}

std::optional<SpellMode> ReviewQuestion::mode() const
{
    const auto *spell = std::get_if<Spell>(&type);
    return spell ? std::optional(spell->mode) : std::nullopt;
}

std::optional<QString> ReviewQuestion::formHint() const
{
    const QString wanted = answer.toLower();
    if (wanted == entry.headword.toLower())
        return std::nullopt;
    for (const FormSlot &slot : entry.formSlots()) {
        if (slot.form.toLower() == wanted)
            return u"要用 %1 的%2"_s.arg(entry.headword, label(slot.kind));
    }
    return u"注意这里不是原形"_s;
}

} // namespace nimbrelle
