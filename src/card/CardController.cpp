#include "card/CardController.h"

#include "ai/AIError.h"
#include "card/CardPanel.h"
#include "card/CardPlacement.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"
#include "platform/Screens.h"

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

constexpr auto offerLifetime = 4s;
constexpr auto leftPause = 700ms; // for a hand that slips
constexpr auto recallPause = 3600s; // a word just reviewed needs no further test
constexpr qsizetype contextInKey = 300;

// The answer depends on the sentence, so the same word in another sentence is another entry.
QString cacheKey(const QString &selection, const std::optional<QString> &context)
{
    return selection.toLower() + u'|' + firstCharacters(context.value_or(QString()), contextInKey);
}

CardError errorOf(const std::exception &failure)
{
    const auto *error = dynamic_cast<const AIError *>(&failure);
    const bool needsSettings =
        error && (error->kind() == AIError::Kind::noKey || error->kind() == AIError::Kind::unauthorized);
    return {.message = Failure::shownText(failure), .needsSettings = needsSettings};
}

} // namespace

CardController::CardController(Clock &clock, const ConfigStore &config, WordStore &words,
    AIClientFactory newClient, const Screens &screens, CardPanel &panel, CurrentSource currentSource,
    QObject *parent)
    : QObject(parent)
    , m_clock(clock)
    , m_config(config)
    , m_words(words)
    , m_newClient(std::move(newClient))
    , m_screens(screens)
    , m_panel(panel)
    , m_currentSource(std::move(currentSource))
{
}

CardController::~CardController()
{
    m_task.cancel(); // first, so that no flow shows what the last line stops
    m_sourceTask.cancel();
    m_exchanges.request_stop();
}

bool CardController::isVisible() const
{
    return m_panel.isVisible();
}

QRectF CardController::frame() const
{
    return m_panel.frame();
}

void CardController::open(CardState state, QPointF at)
{
    m_task.cancel();
    m_leftTask.cancel();
    m_anchor = at;
    update(std::move(state));
    m_panel.bringToFront();
}

void CardController::lookup(const QString &selection, const std::optional<QString> &context, QPointF at)
{
    open(CardLoading{.selection = selection}, at);
    const std::stop_token stop = m_task.renew();
    explain(selection, context, m_currentSource(stop), stop);
}

QCoro::Task<> CardController::explain(
    QString selection, std::optional<QString> context, QCoro::Task<PageSource> source, std::stop_token stop)
{
    const QString key = cacheKey(selection, context);
    try {
        if (!m_cache.contains(key)) {
            const auto client = m_newClient(m_config.config());
            const Explanation answer = co_await client->explain(selection, context, m_exchanges.get_token());
            m_cache.insert(key, answer); // also when nobody waits for it any more
        }
        const PageSource place = co_await source; // asked meanwhile
        if (!stop.stop_requested())
            showWord(selection, m_cache.value(key), place);
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            update(errorOf(failure));
    }
}

void CardController::showWord(
    const QString &selection, const Explanation &explanation, const PageSource &source)
{
    WordCardData card{.selection = selection, .explanation = explanation, .source = source};
    if (const WordEntry *known = m_words.findHeadword(explanation.headword)) {
        card.recall = recallFor(*known);
        card.unlock = m_words.recordLookup(explanation, source);
        if (const WordEntry *now = m_words.findHeadword(explanation.headword))
            card.savedLookupCount = now->lookupCount;
    }
    update(std::move(card));
}

RecallState CardController::recallFor(const WordEntry &entry) const
{
    const bool isFresh = entry.review && m_clock.now() - entry.review->lastReview < recallPause;
    const bool asks = m_config.config().recallOnLookup && !isFresh;
    return {.kind = asks ? RecallState::Kind::hidden : RecallState::Kind::off};
}

void CardController::offerTranslation(const QString &text, QPointF at)
{
    open(TranslateOffer{.text = text}, at);
    noteTranslationSource(m_sourceTask.renew());
    hideOfferLater(m_offerHideTask.renew());
}

QCoro::Task<> CardController::noteTranslationSource(std::stop_token stop)
{
    m_translationSource = {};
    const PageSource source = co_await m_currentSource(stop);
    if (!stop.stop_requested())
        m_translationSource = source;
}

QCoro::Task<> CardController::hideOfferLater(std::stop_token stop)
{
    co_await m_clock.sleep(offerLifetime, stop);
    if (!stop.stop_requested() && payload<TranslateOffer>())
        hide();
}

void CardController::pointerLeft()
{
    hideOnceLeft(m_leftTask.renew());
}

QCoro::Task<> CardController::hideOnceLeft(std::stop_token stop)
{
    co_await m_clock.sleep(leftPause, stop);
    if (!stop.stop_requested())
        hide();
}

void CardController::translate(const QString &text)
{
    m_leftTask.cancel();
    m_offerHideTask.cancel();
    update(Translating{.text = text});
    fetchTranslation(text, m_task.renew());
}

void CardController::showTranslation(const QString &text, QPointF at)
{
    open(Translating{.text = text}, at);
    noteTranslationSource(m_sourceTask.renew());
    translate(text);
}

QCoro::Task<> CardController::fetchTranslation(QString text, std::stop_token stop)
{
    try {
        const auto client = m_newClient(m_config.config());
        Translation translation = co_await client->translate(text, stop);
        if (!stop.stop_requested())
            update(TranslationData{.original = text, .translation = std::move(translation)});
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            update(errorOf(failure));
    }
}

void CardController::showError(const CardError &error, QPointF at)
{
    open(error, at);
}

void CardController::hide()
{
    m_task.cancel();
    m_offerHideTask.cancel();
    m_leftTask.cancel();
    m_panel.orderOut();
    m_model.setState(CardHidden{});
}

void CardController::save()
{
    const auto *card = payload<WordCardData>();
    if (!card)
        return;
    WordCardData saved = *card;
    const SavedWord word = m_words.save(saved.explanation, saved.source);
    saved.savedLookupCount = word.entry.lookupCount;
    saved.justSaved = true;
    if (!word.unlock.isEmpty())
        saved.unlock = word.unlock;
    update(std::move(saved));
}

void CardController::revealRecall()
{
    const auto *card = payload<WordCardData>();
    if (!card || card->recall.kind != RecallState::Kind::hidden)
        return;
    WordCardData revealed = *card;
    revealed.recall = {.kind = RecallState::Kind::revealed};
    update(std::move(revealed));
}

void CardController::rateRecall(bool remembered)
{
    const auto *card = payload<WordCardData>();
    if (!card || card->recall.kind != RecallState::Kind::revealed)
        return;
    WordCardData rated = *card;
    const WordEntry *word = m_words.findHeadword(rated.explanation.headword);
    if (!word)
        return;
    m_words.applyReview(word->id, remembered ? Rating::good : Rating::again, LogKind::review);
    rated.recall = {.kind = RecallState::Kind::done, .remembered = remembered};
    update(std::move(rated));
}

void CardController::ask(std::optional<QuickQuestion> question)
{
    AskContext context;
    if (const auto *word = payload<WordCardData>()) {
        const Explanation &explanation = word->explanation;
        const QString sentence = explanation.sentence.value_or(QString());
        context = {.original = sentence.isEmpty() ? word->selection : sentence,
            .translation = explanation.sentenceZh,
            .focusWord = explanation.headword,
            .explanation = explanation,
            .source = word->source};
    } else if (const auto *done = payload<TranslationData>()) {
        context = {.original = done->original,
            .translation = done->translation.translationZh,
            .source = m_translationSource};
    } else {
        return;
    }
    hide();
    emit askRequested(context, question);
}

void CardController::openSettings()
{
    const auto *error = payload<CardError>();
    if (!error || !error->needsSettings)
        return;
    hide();
    emit settingsRequested();
}

void CardController::update(CardState state)
{
    m_model.setState(std::move(state));
    refreshLayout(); // when the view has settled
    relayout(); // and now, so that the card does not flash at a stale size
}

void CardController::refreshLayout()
{
    QMetaObject::invokeMethod(this, &CardController::relayout, Qt::QueuedConnection);
}

void CardController::relayout()
{
    const QList<Screen> screens = m_screens.all();
    auto screen = screenHolding(screens, m_anchor);
    if (!screen && !screens.isEmpty())
        screen = screens.first();
    const QRectF free = screen ? screen->workArea : QRectF();
    const QSizeF size = m_panel.fittingSize(free.size());
    if (size.width() <= 0 || size.height() <= 0)
        return;
    m_panel.place(placedCard(m_anchor, size, free));
}

} // namespace nimbrelle
