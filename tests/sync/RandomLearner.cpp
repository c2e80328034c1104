#include "sync/RandomLearner.h"

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "sync/MergeWords.h"

#include <array>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

const QStringList headwords{u"run"_s, u"Run"_s, u"apple"_s, u"Apple"_s, u"unhappily"_s, u"look up"_s,
    u"naïve"_s, u"deploy"_s, u"reluctant"_s, u"care"_s, u"careless"_s, u"thread"_s};
const QStringList sites{u"forum.example.org"_s, u"docs.example.com"_s, u"example.net"_s};
const QStringList kinds{u"base"_s, u"past"_s, u"third_person"_s, u"plural"_s, u"nonsense"_s};
const QStringList grammar{u"plural"_s, u"past_simple"_s, u"gerund"_s};
const QStringList affixes{u"un"_s, u"ly"_s, u"less"_s};

QString sentenceOf(const QString &headword, quint32 number)
{
    return u"Sentence %1 says “%2” 🙂."_s.arg(number).arg(headword.toLower());
}

// What the AI says of a headword is the same everywhere, but for the place where it was met.
Explanation explanationFor(Random &random)
{
    Explanation explanation;
    explanation.headword = random.from(headwords);
    explanation.meaningZh = u"意思"_s;
    if (explanation.headword.size() > 4)
        explanation.phonetic = u"/x/"_s;
    if (!random.oneIn(4)) {
        explanation.sentence = sentenceOf(explanation.headword, random.below(4));
        explanation.sentenceIsExample = random.oneIn(4);
        explanation.grammar = random.from(grammar);
    }
    explanation.formKind = random.from(kinds);
    explanation.inflections = {
        {u"past"_s, explanation.headword + u"ed"_s}, {u"plural"_s, explanation.headword + u"s"_s}};
    if (explanation.headword.contains(u"care"_s))
        explanation.familyRoot = u"care"_s;
    explanation.affixes = QStringList{affixes[explanation.headword.size() % 3]};
    return explanation;
}

PageSource sourceFor(Random &random)
{
    if (random.oneIn(4))
        return {.app = u"Terminal"_s, .url = std::nullopt, .title = std::nullopt};
    return {.app = u"Browser"_s, .url = u"https://"_s + random.from(sites) + u"/a"_s, .title = u"A page"_s};
}

AINote noteFor(Random &random, Timestamp now)
{
    AINote note;
    note.id = random.id();
    note.question = u"为什么 %1？"_s.arg(random.below(100));
    note.answer = u"因为……"_s;
    note.addedAt = now;
    return note;
}

void changeSettings(Device &device, Random &random)
{
    AppConfig config = device.config().config();
    config.learningSlots = 1 + random.below(6);
    config.recallOnLookup = random.oneIn(2);
    device.config().setConfig(config);
}

// The word that is touched, if there is any.
std::optional<WordEntry> someWord(const WordStore &store, Random &random)
{
    return store.entries().isEmpty() ? std::nullopt : std::optional(random.from(store.entries()));
}

WordEntry joined(const WordEntry &returning, const WordEntry &saved)
{
    return SyncMerge::mergeEntry(returning, saved, {});
}

// Or takes the last deletion back, whatever has come in between.
void deleteWord(Device &device, const WordEntry &word, Random &random)
{
    if (device.deleted && random.oneIn(2)) {
        device.store().restore(*std::exchange(device.deleted, std::nullopt), random.below(3), joined);
        return;
    }
    device.deleted = word;
    device.store().remove(word.id);
}

void deleteSomething(Device &device, Random &random)
{
    WordStore &store = device.store();
    const auto word = someWord(store, random);
    switch (random.below(5)) {
    case 0:
        if (word)
            deleteWord(device, *word, random);
        break;
    case 1:
        if (word && !word->examples.isEmpty())
            store.deleteExample(random.from(word->examples).id, word->id);
        break;
    case 2:
        if (word && word->notes && !word->notes->isEmpty())
            store.deleteNote(random.from(*word->notes).id, word->id);
        break;
    case 3:
        if (!store.sentenceNotes().isEmpty())
            store.deleteSentenceNote(random.from(store.sentenceNotes()).id);
        break;
    case 4:
        if (!store.grammarEncounters().isEmpty())
            store.deleteGrammarEncounter(random.from(store.grammarEncounters()).id);
        break;
    }
}

void changeWord(WordStore &store, const WordEntry &word, Random &random)
{
    const auto rating = static_cast<Rating>(random.below(4));
    switch (random.below(8)) {
    case 0:
    case 1:
        store.applyReview(word.id, rating, LogKind::review);
        break;
    case 2:
        store.applySpelling(word.id, rating);
        break;
    case 3:
        store.rest(word.id, random.below(3));
        break;
    case 4:
        store.setSpellPractice(word.id, random.oneIn(2));
        break;
    case 5:
        store.setWantToLearn(word.id, random.oneIn(2));
        break;
    case 6:
        store.startLearning(word.id);
        break;
    case 7:
        store.requestMnemonic(word.id);
        break;
    }
}

} // namespace

void learn(Device &device, quint32 seed)
{
    Random random(seed);
    WordStore &store = device.store();
    const auto word = someWord(store, random);
    const quint32 choice = random.below(20);
    if (choice < 9) {
        // One after the other: in which order a call works out its arguments is the compiler's affair.
        const Explanation explanation = explanationFor(random);
        const PageSource source = sourceFor(random);
        if (choice < 5)
            store.save(explanation, source);
        else
            store.recordLookup(explanation, source);
    } else if (choice < 14 && word) {
        changeWord(store, *word, random);
    } else if (choice == 14 && word) {
        store.addNote(noteFor(random, device.clock.now()), word->headword);
    } else if (choice == 15) {
        store.addSentenceNote(noteFor(random, device.clock.now()));
    } else if (choice == 16) {
        store.fillSlots(random.below(3));
    } else if (choice == 17) {
        changeSettings(device, random);
    } else {
        deleteSomething(device, random);
    }
}

} // namespace nimbrelle
