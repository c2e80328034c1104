#pragma once

#include "ai/AIClient.h"
#include "card/AskContext.h"
#include "card/Card.h"
#include "frame/TaskSlot.h"

#include <QHash>

namespace nimbrelle {

class CardPanel;
class Clock;
class ConfigStore;
class Screens;
class WordStore;

/// Owns the floating card: what it shows, where it is placed, and the flow from a text to its explanation. A
/// newer call replaces the flow before; an exchange that was begun for an explanation still runs to its end,
/// and its answer is cached. Main thread only.
class CardController : public QObject, public Card {
    Q_OBJECT

public:
    /// Tells where the user is reading, as it is when it is called; the answer may take a moment. What it
    /// asks outlives us until the token is stopped.
    using CurrentSource = std::function<QCoro::Task<PageSource>(std::stop_token)>;

    /// `currentSource` is called only once the card is on the screen.
    CardController(Clock &clock, const ConfigStore &config, WordStore &words, AIClientFactory newClient,
        const Screens &screens, CardPanel &panel, CurrentSource currentSource, QObject *parent = nullptr);
    ~CardController() override;

    CardModel &model() { return m_model; }
    QPointF anchor() const { return m_anchor; }

    const CardState &state() const override { return m_model.state(); }
    bool isVisible() const override;
    QRectF frame() const override;

    void lookup(const QString &selection, const std::optional<QString> &context, QPointF at) override;
    void offerTranslation(const QString &text, QPointF at) override;
    void showTranslation(const QString &text, QPointF at) override;
    void showError(const CardError &error, QPointF at) override;
    void hide() override;

    /// @name For sessions that tell nothing of clicks elsewhere: the pointer is on the card, and leaves it
    /// again. A card that it has left goes a little later, unless it comes back or the card is another by
    /// then.
    /// @{
    void pointerCame() { m_leftTask.cancel(); }
    void pointerLeft();
    /// @}

    /// Accepts the offer.
    void translate(const QString &text);

    /// @name For the card's buttons. Each does nothing in a state that has no such button.
    /// @{
    void save();
    void revealRecall();
    void rateRecall(bool remembered);
    void ask(std::optional<QuickQuestion> question);
    void openSettings();
    /// @}

    /// Sets what is shown and places the panel for it.
    void update(CardState state);
    /// Places the panel at the next turn of the event loop; for views that change their size themselves.
    void refreshLayout();

signals:
    /// The card is hidden by then.
    void askRequested(const AskContext &context, std::optional<QuickQuestion> question);
    void settingsRequested();

private:
    void open(CardState state, QPointF at);
    void relayout();
    template <class Payload> const Payload *payload() const { return std::get_if<Payload>(&state()); }

    QCoro::Task<> explain(QString selection, std::optional<QString> context, QCoro::Task<PageSource> source,
        std::stop_token stop);
    void showWord(const QString &selection, const Explanation &explanation, const PageSource &source);
    RecallState recallFor(const WordEntry &entry) const;
    QCoro::Task<> noteTranslationSource(std::stop_token stop);
    QCoro::Task<> fetchTranslation(QString text, std::stop_token stop);
    QCoro::Task<> hideOfferLater(std::stop_token stop);
    QCoro::Task<> hideOnceLeft(std::stop_token stop);

    Clock &m_clock;
    const ConfigStore &m_config;
    WordStore &m_words;
    const AIClientFactory m_newClient;
    const Screens &m_screens;
    CardPanel &m_panel;
    const CurrentSource m_currentSource;

    CardModel m_model;
    QPointF m_anchor;
    QHash<QString, Explanation> m_cache; // answers of this run, by word and sentence
    PageSource m_translationSource;
    TaskSlot m_task;
    TaskSlot m_sourceTask; // of a translation
    TaskSlot m_offerHideTask;
    TaskSlot m_leftTask;
    // Of explanations, of which several run to their ends side by side; stopped only when we go.
    std::stop_source m_exchanges;
};

} // namespace nimbrelle
