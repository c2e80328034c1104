#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "frame/RecordCodec.h"
#include "frame/Saturate.h"
#include "notebook/Explanation.h"
#include "notebook/LearningLog.h"
#include "notebook/PageSource.h"
#include "notebook/WordStore.h"
#include "review/FSRS.h"

#include <QPointer>

#include <algorithm>

// What an answer of the learner does to a word.
namespace nimbrelle {

namespace {

constexpr double retentionLearning = 0.95;
constexpr double retentionMastered = 0.9;
constexpr qsizetype mnemonicKnownWords = 40;

qint64 nextSpellLevel(qint64 level, Rating rating)
{
    switch (rating) {
    case Rating::again:
        return std::max<qint64>(saturatingSubtract(level, 1), 0);
    case Rating::hard:
        return level;
    case Rating::good:
    case Rating::easy:
        return std::min(saturatingAdd(level, 1), maxSpellLevel);
    }
    return level;
}

} // namespace

ReviewOutcome WordStore::applyReview(QUuid id, Rating rating, const QString &kind)
{
    const auto found = position(id);
    if (!found)
        return ReviewOutcome::normal;
    refreshStatsDay();
    const AppConfig &config = m_config.config();
    const Timestamp now = m_clock.now();

    WordEntry word = m_entries[*found];
    const qint64 priorLapses = word.lapses();
    const bool wasLearning = word.stage == Stage::learning;
    const double retention = word.stage == Stage::mastered ? retentionMastered : retentionLearning;
    word.review = FSRS::review(word.review, rating, now, retention);
    const bool graduates = wasLearning && word.review->stability >= static_cast<double>(config.graduateDays);
    if (graduates) {
        word.stage = Stage::mastered;
        word.stateAt = now;
    }
    put(*found, word);
    countReviewed();
    m_log.add(kind, word.headword, caseText(rating));

    auto outcome = ReviewOutcome::normal;
    if (graduates) {
        m_log.add(QStringLiteral("graduate"), word.headword);
        outcome = ReviewOutcome::graduated;
    } else if (priorLapses < config.leechThreshold && word.lapses() >= config.leechThreshold) {
        m_log.add(QStringLiteral("leech"), word.headword);
        requestMnemonic(id);
        outcome = ReviewOutcome::becameLeech;
    }
    writeEntries();
    writeStats();
    return outcome;
}

void WordStore::countReviewed()
{
    emit changing();
    m_stats.reviewed = saturatingAdd(m_stats.reviewed, 1);
}

qint64 WordStore::applySpelling(QUuid id, Rating rating)
{
    const auto found = position(id);
    if (!found)
        return 0;
    WordEntry word = m_entries[*found];
    const qint64 asked = word.spellLevel.value_or(0);
    const qint64 level = nextSpellLevel(asked, rating);
    word.spellLevel = level;
    word.lastSpelledAt = m_clock.now();
    put(*found, word);
    m_log.add(QStringLiteral("spell"), word.headword,
        QStringLiteral("%1 %2").arg(label(spellModeForLevel(asked)), caseText(rating)));
    writeEntries();
    return level;
}

void WordStore::rest(QUuid id, qint64 days)
{
    const auto found = position(id);
    if (!found)
        return;
    WordEntry word = m_entries[*found];
    word.stage = Stage::resting;
    word.restUntil = addDays(m_clock.now(), days);
    word.stateAt = m_clock.now();
    put(*found, word);
    m_log.add(QStringLiteral("rest"), word.headword);
    writeEntries();
}

void WordStore::setSpellPractice(QUuid id, bool on)
{
    const auto found = position(id);
    if (!found)
        return;
    WordEntry word = m_entries[*found];
    word.spellPractice = on ? std::optional(true) : std::nullopt;
    word.stateAt = m_clock.now();
    put(*found, word);
    m_log.add(on ? QStringLiteral("spell-add") : QStringLiteral("spell-remove"), word.headword);
    writeEntries();
}

WordEntry WordStore::addSpellPractice(const Explanation &explanation)
{
    const auto known = index(explanation.headword);
    const PageSource source{QStringLiteral("常拼"), std::nullopt, std::nullopt};
    const WordEntry word = known ? m_entries[*known] : save(explanation, source).entry;
    if (!word.isSpellPractice())
        setSpellPractice(word.id, true);
    const WordEntry *now = find(word.id);
    return now ? *now : word;
}

void WordStore::requestMnemonic(QUuid id)
{
    const WordEntry *word = find(id);
    if (!word || word->mnemonic || !m_mnemonicRequest)
        return;
    QStringList known;
    for (const WordEntry &entry : std::as_const(m_entries)) {
        if (entry.stage == Stage::mastered && known.size() < mnemonicKnownWords)
            known.append(entry.headword);
    }
    fetchMnemonic(*word, known, topInterests());
}

// Runs on its own: when the answer comes, the store may be gone and the word deleted.
QCoro::Task<> WordStore::fetchMnemonic(WordEntry word, QStringList knownWords, QStringList interests)
{
    const QPointer<WordStore> store(this);
    const MnemonicRequest request = m_mnemonicRequest;
    try {
        const QString tip = co_await request(word, knownWords, interests);
        const auto found = store ? store->position(word.id) : std::nullopt;
        if (!found)
            co_return;
        WordEntry helped = store->m_entries[*found];
        helped.mnemonic = tip;
        store->put(*found, helped);
        store->writeEntries();
    } catch (const std::exception &) {
        // The word simply stays without a memory aid.
    }
}

} // namespace nimbrelle
