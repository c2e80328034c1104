#include "frame/AppPaths.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "frame/Failure.h"
#include "frame/RecordFile.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "notebook/Rounds.h"
#include "notebook/SlotPlan.h"
#include "notebook/WordQueries.h"
#include "notebook/WordStore.h"
#include "review/SpellMode.h"

#include <QPointer>

// The learning set, rounds, and what the learner's answers and decisions do.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mnemonicKnownWords = 40;

} // namespace

qint64 WordStore::learningCount() const
{
    return WordQueries::learningCount(m_entries);
}

qint64 WordStore::spellPracticeCount() const
{
    return WordQueries::spellPracticeCount(m_entries);
}

qint64 WordStore::fillSlots(qint64 extra)
{
    const Timestamp now = m_clock.now();
    refreshStatsDay();
    const SlotPlan plan = planSlots(m_entries, m_config.config(), m_stats.newLearned, extra, now);

    const auto move = [this, now](qsizetype position, void (*to)(WordEntry &, Timestamp)) {
        WordEntry word = m_entries[position];
        to(word, now);
        put(position, word);
    };

    for (const qsizetype position : plan.waking)
        move(position, WordChanges::wake);
    for (const qsizetype position : plan.leaving) {
        move(position, WordChanges::leaveLearning);
        m_log.add(LogKind::leave, m_entries[position].headword);
    }
    if (!plan.leaving.isEmpty())
        writeEntries();

    for (const qsizetype position : plan.joining) {
        move(position, WordChanges::joinLearning);
        count(&ReviewStats::newLearned);
        m_log.add(LogKind::join, m_entries[position].headword);
    }
    if (!plan.joining.isEmpty()) {
        writeEntries();
        writeRecordFile(m_paths.reviewStats, m_stats, m_damaged);
    }
    return plan.joining.size();
}

bool WordStore::startLearning(QUuid id)
{
    const WordEntry *word = find(id);
    if (!word || word->stage == Stage::learning || learningCount() >= m_config.config().learningSlots)
        return false;
    word = change(id, [this](WordEntry &joining) {
        WordChanges::joinLearning(joining, m_clock.now());
        joining.restUntil.reset();
    });
    m_log.add(LogKind::join, word->headword, u"manual"_s);
    writeEntries();
    return true;
}

void WordStore::setWantToLearn(QUuid id, bool value)
{
    if (change(id, [&](WordEntry &word) { WordChanges::setWantToLearn(word, value, m_clock.now()); }))
        writeEntries();
}

ReviewOutcome WordStore::applyReview(QUuid id, Rating rating, LogKind kind)
{
    if (!find(id))
        return ReviewOutcome::normal;
    refreshStatsDay();
    auto outcome = ReviewOutcome::normal;
    const QString headword = change(id, [&](WordEntry &word) {
        outcome = WordChanges::review(word, rating, m_config.config(), m_clock.now());
    })->headword;
    count(&ReviewStats::reviewed);
    m_log.add(kind, headword, caseText(rating));
    if (outcome == ReviewOutcome::graduated)
        m_log.add(LogKind::graduate, headword);
    if (outcome == ReviewOutcome::becameLeech) {
        m_log.add(LogKind::leech, headword);
        requestMnemonic(id);
    }
    writeEntries();
    writeRecordFile(m_paths.reviewStats, m_stats, m_damaged);
    return outcome;
}

qint64 WordStore::applySpelling(QUuid id, Rating rating)
{
    qint64 asked = 0;
    const WordEntry *word = change(id, [&](WordEntry &spelled) {
        asked = spelled.spellLevel.value_or(0);
        WordChanges::spell(spelled, rating, m_clock.now());
    });
    if (!word)
        return 0;
    m_log.add(
        LogKind::spell, word->headword, u"%1 %2"_s.arg(label(spellModeForLevel(asked)), caseText(rating)));
    writeEntries();
    return word->spellLevel.value_or(0);
}

void WordStore::rest(QUuid id, qint64 days)
{
    const auto *word = change(id, [&](WordEntry &tired) { WordChanges::rest(tired, days, m_clock.now()); });
    if (!word)
        return;
    m_log.add(LogKind::rest, word->headword);
    writeEntries();
}

void WordStore::setSpellPractice(QUuid id, bool on)
{
    const auto *word =
        change(id, [&](WordEntry &listed) { WordChanges::setSpellPractice(listed, on, m_clock.now()); });
    if (!word)
        return;
    m_log.add(on ? LogKind::spellAdd : LogKind::spellRemove, word->headword);
    writeEntries();
}

WordEntry WordStore::addSpellPractice(const Explanation &explanation)
{
    const WordEntry *known = findHeadword(explanation.headword);
    const WordEntry word = known ? *known : save(explanation, {.app = u"常拼"_s}).entry;
    if (!word.isSpellPractice())
        setSpellPractice(word.id, true);
    const WordEntry *now = find(word.id);
    return now ? *now : word;
}

void WordStore::requestMnemonic(QUuid id)
{
    const WordEntry *word = find(id);
    if (word && !word->mnemonic && m_mnemonicRequest)
        fetchMnemonic(*word, WordQueries::masteredWords(m_entries, mnemonicKnownWords), topInterests());
}

// Runs on its own: when the answer comes, the store may be gone and the word deleted.
QCoro::Task<> WordStore::fetchMnemonic(WordEntry word, QStringList knownWords, QStringList interests)
{
    const QPointer<WordStore> store(this);
    const MnemonicRequest request = m_mnemonicRequest;
    try {
        const QString tip = co_await request(word, knownWords, interests);
        if (store && store->change(word.id, [&tip](WordEntry &helped) { helped.mnemonic = tip; }))
            store->writeEntries();
    } catch (const std::exception &) {
        // The word simply stays without a memory aid.
    }
}

QList<QUuid> WordStore::buildSession(qint64 extraNew)
{
    fillSlots(extraNew);
    return Rounds::review(m_entries, m_config.config().sessionSize, m_clock.now());
}

Rounds::Rehearsal WordStore::rehearseSession(Timestamp now) const
{
    const qint64 newLearned = m_stats.day == DayKey::string(now) ? m_stats.newLearned : 0;
    return Rounds::rehearse(m_entries, m_config.config(), newLearned, now);
}

QList<QUuid> WordStore::buildSpellingSession(qint64 size) const
{
    return Rounds::spelling(m_entries, size);
}

} // namespace nimbrelle
