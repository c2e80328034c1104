#include "review/ReviewSession.h"

#include "frame/Clock.h"
#include "platform/Speaker.h"
#include "review/Grading.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

using namespace std::chrono_literals;

constexpr auto autoAdvance = 1200ms;
constexpr qint64 spellingSessionSize = 10;

} // namespace

ReviewSession::ReviewSession(WordStore &store, Clock &clock, Speaker &speaker, QObject *parent)
    : QObject(parent), m_store(store), m_clock(clock), m_speaker(speaker)
{
    connect(&store, &WordStore::changing, this, &ReviewSession::changed, Qt::QueuedConnection);
}

ReviewSession::~ReviewSession() = default;

void ReviewSession::start(qint64 extraNew)
{
    m_isSpellingPractice = false;
    begin(questions(m_store.buildSession(extraNew), &ReviewQuestion::make));
}

void ReviewSession::startSpelling()
{
    m_isSpellingPractice = true;
    begin(questions(m_store.buildSpellingSession(spellingSessionSize), &ReviewQuestion::spelling));
}

void ReviewSession::reveal()
{
    if (m_phase != Phase(Asking{}) || !current() || current()->isSpelling())
        return;
    m_phase = Revealed{};
    emit changed();
}

void ReviewSession::rate(Rating rating)
{
    if (!awaitsRating() || !current())
        return;
    const ReviewQuestion question = *current();
    apply(rating, question);
    const bool isRecalled = rating == Rating::good || rating == Rating::easy;
    if (isRecalled && question.entry.register_ != Register::slang) {
        if (const WordEntry *live = m_store.find(question.entry.id))
            m_queue.insert(m_index + 1, ReviewQuestion::spelling(*live));
    }
    if (m_lastOutcome == ReviewOutcome::normal) {
        moveOn();
        return;
    }
    m_phase = Revealed{.typed = true, .rating = rating};
    emit changed();
}

void ReviewSession::submit()
{
    if (m_phase != Phase(Asking{}) || !current() || !current()->isSpelling())
        return;
    const ReviewQuestion question = *current();
    const Grade verdict = grade(m_input, question, m_hintsUsed);
    const WordEntry *live = m_store.find(question.entry.id);
    const qint64 oldLevel = live ? live->spellLevel.value_or(0) : 0;
    const qint64 newLevel = m_store.applySpelling(question.entry.id, verdict.rating);
    if (verdict.rating != Rating::again)
        ++m_spelledRight;
    else if (m_isSpellingPractice)
        repeatOnce(question.entry.id, &ReviewQuestion::spelling);
    if (oldLevel < newLevel)
        m_spellLevelUps.append(question.entry.headword);
    m_phase = Revealed{.typed = true, .rating = verdict.rating, .message = verdict.message};
    emit changed();
    m_speaker.speak(question.answer);
    if (verdict == Grade{.rating = Rating::good})
        advanceSoon(question.id);
}

void ReviewSession::giveLetter()
{
    if (m_phase != Phase(Asking{}) || !current() || !current()->isSpelling())
        return;
    const auto helped = withNextLetter(m_input, current()->answer);
    if (!helped)
        return;
    m_input = *helped;
    ++m_hintsUsed;
    emit changed();
}

void ReviewSession::next()
{
    const auto *revealed = std::get_if<Revealed>(&m_phase);
    if (revealed && revealed->typed)
        moveOn();
}

void ReviewSession::waitForLearner()
{
    m_advance.cancel();
}

void ReviewSession::restWord()
{
    if (!std::holds_alternative<Revealed>(m_phase) || !current())
        return;
    const QUuid wordId = current()->entry.id;
    m_store.rest(wordId, WordChanges::restDays);
    for (qsizetype i = m_queue.size() - 1; i > m_index; --i) {
        if (m_queue[i].entry.id == wordId)
            m_queue.removeAt(i);
    }
    moveOn();
}

void ReviewSession::setInput(const QString &text)
{
    if (std::exchange(m_input, text) != text)
        emit changed();
}

void ReviewSession::setCopyInput(const QString &text)
{
    if (std::exchange(m_copyInput, text) != text)
        emit changed();
}

const ReviewQuestion *ReviewSession::current() const
{
    return m_index < m_queue.size() ? &m_queue[m_index] : nullptr;
}

std::optional<WordEntry> ReviewSession::liveEntry() const
{
    const ReviewQuestion *question = current();
    if (!question)
        return std::nullopt;
    const WordEntry *live = m_store.find(question->entry.id);
    return live ? *live : question->entry;
}

QList<ReviewQuestion> ReviewSession::questions(
    const QList<QUuid> &ids, ReviewQuestion (*question)(const WordEntry &)) const
{
    QList<ReviewQuestion> made;
    for (const QUuid &id : ids) {
        if (const WordEntry *entry = m_store.find(id))
            made.append(question(*entry));
    }
    return made;
}

void ReviewSession::begin(const QList<ReviewQuestion> &questions)
{
    m_queue = questions;
    m_index = m_remembered = m_forgot = m_spelledRight = 0;
    m_graduatedWords.clear();
    m_spellLevelUps.clear();
    m_lastOutcome = ReviewOutcome::normal;
    m_retried.clear();
    resetInput();
    m_phase = m_queue.isEmpty() ? Phase(Empty{}) : Phase(Asking{});
    m_advance.cancel();
    emit changed();
    speakIfDictation();
}

void ReviewSession::moveOn()
{
    m_lastOutcome = ReviewOutcome::normal;
    ++m_index;
    resetInput();
    m_phase = m_index < m_queue.size() ? Phase(Asking{}) : Phase(Finished{});
    m_advance.cancel();
    emit changed();
    speakIfDictation();
}

void ReviewSession::resetInput()
{
    m_input.clear();
    m_copyInput.clear();
    m_hintsUsed = 0;
}

void ReviewSession::speakIfDictation()
{
    const ReviewQuestion *question = current();
    if (m_phase == Phase(Asking{}) && question && question->mode() == SpellMode::dictation)
        m_speaker.speak(question->answer);
}

void ReviewSession::apply(Rating rating, const ReviewQuestion &question)
{
    m_lastOutcome = m_store.applyReview(question.entry.id, rating, LogKind::review);
    if (m_lastOutcome == ReviewOutcome::graduated)
        m_graduatedWords.append(question.entry.headword);
    if (rating != Rating::again) {
        ++m_remembered;
        return;
    }
    ++m_forgot;
    repeatOnce(question.entry.id, &ReviewQuestion::make);
}

void ReviewSession::repeatOnce(const QUuid &wordId, ReviewQuestion (*question)(const WordEntry &))
{
    const WordEntry *live = m_store.find(wordId);
    if (!live || m_retried.contains(wordId))
        return;
    m_retried.insert(wordId);
    m_queue.append(question(*live));
}

bool ReviewSession::awaitsRating() const
{
    const auto *revealed = std::get_if<Revealed>(&m_phase);
    return revealed && !revealed->typed && !revealed->rating;
}

void ReviewSession::advanceSoon(const QUuid &questionId)
{
    advance(questionId, m_advance.renew());
}

// The learner may have moved on by hand during the wait.
QCoro::Task<> ReviewSession::advance(QUuid questionId, std::stop_token stop)
{
    co_await m_clock.sleep(autoAdvance, stop);
    if (stop.stop_requested())
        co_return;
    const bool isStillShown = std::holds_alternative<Revealed>(m_phase);
    if (isStillShown && current() && current()->id == questionId)
        moveOn();
}

} // namespace nimbrelle
