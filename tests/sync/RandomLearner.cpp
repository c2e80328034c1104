#include "sync/RandomLearner.h"

#include "notebook/Explanation.h"
#include "notebook/PageSource.h"

#include <array>

namespace nimbrelle {

namespace {

const QStringList headwords{QStringLiteral("run"), QStringLiteral("Run"), QStringLiteral("apple"),
    QStringLiteral("Apple"), QStringLiteral("unhappily"), QStringLiteral("look up"), QStringLiteral("naïve"),
    QStringLiteral("deploy"), QStringLiteral("reluctant"), QStringLiteral("care"), QStringLiteral("careless"),
    QStringLiteral("thread")};
const QStringList sites{
    QStringLiteral("forum.example.org"), QStringLiteral("docs.example.com"), QStringLiteral("example.net")};
const QStringList kinds{QStringLiteral("base"), QStringLiteral("past"), QStringLiteral("third_person"),
    QStringLiteral("plural"), QStringLiteral("nonsense")};
const QStringList grammar{QStringLiteral("plural"), QStringLiteral("past_simple"), QStringLiteral("gerund")};
const QStringList affixes{QStringLiteral("un"), QStringLiteral("ly"), QStringLiteral("less")};

QString sentenceOf(const QString &headword, quint32 number)
{
    return QStringLiteral("Sentence %1 says “%2” 🙂.").arg(number).arg(headword.toLower());
}

// What the AI says of a headword is the same everywhere, but for the place where it was met.
Explanation explanationFor(Random &random)
{
    Explanation explanation;
    explanation.headword = random.from(headwords);
    explanation.meaningZh = QStringLiteral("意思");
    if (explanation.headword.size() > 4)
        explanation.phonetic = QStringLiteral("/x/");
    if (!random.oneIn(4)) {
        explanation.sentence = sentenceOf(explanation.headword, random.below(4));
        explanation.sentenceIsExample = random.oneIn(4);
        explanation.grammar = random.from(grammar);
    }
    explanation.formKind = random.from(kinds);
    explanation.inflections = {{QStringLiteral("past"), explanation.headword + QStringLiteral("ed")},
        {QStringLiteral("plural"), explanation.headword + QStringLiteral("s")}};
    if (explanation.headword.contains(QStringLiteral("care")))
        explanation.familyRoot = QStringLiteral("care");
    explanation.affixes = QStringList{affixes[explanation.headword.size() % 3]};
    return explanation;
}

PageSource sourceFor(Random &random)
{
    if (random.oneIn(4))
        return {QStringLiteral("Terminal"), std::nullopt, std::nullopt};
    return {QStringLiteral("Browser"), QStringLiteral("https://") + random.from(sites) + QStringLiteral("/a"),
        QStringLiteral("A page")};
}

AINote noteFor(Random &random, Timestamp now)
{
    AINote note;
    note.id = random.id();
    note.question = QStringLiteral("为什么 %1？").arg(random.below(100));
    note.answer = QStringLiteral("因为……");
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

void deleteSomething(WordStore &store, Random &random)
{
    const auto word = someWord(store, random);
    switch (random.below(5)) {
    case 0:
        if (word)
            store.remove(word->id);
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
    if (choice < 5)
        store.save(explanationFor(random), sourceFor(random));
    else if (choice < 9)
        store.recordLookup(explanationFor(random), sourceFor(random));
    else if (choice < 14 && word)
        changeWord(store, *word, random);
    else if (choice == 14 && word)
        store.addNote(noteFor(random, device.clock.now()), word->headword);
    else if (choice == 15)
        store.addSentenceNote(noteFor(random, device.clock.now()));
    else if (choice == 16)
        store.fillSlots(random.below(3));
    else if (choice == 17)
        changeSettings(device, random);
    else
        deleteSomething(store, random);
}

} // namespace nimbrelle
