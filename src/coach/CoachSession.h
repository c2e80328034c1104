#pragma once

#include "ai/Conversation.h"
#include "coach/CoachHistory.h"
#include "frame/Timestamp.h"

namespace nimbrelle {

class Clock;

/// The daily conversation with the AI coach: a briefing at the first opening of a day, then questions and
/// answers. Lives as long as the application, so that an answer may finish while its window is closed; a new
/// day is noticed only at open().
class CoachSession : public Conversation {
    Q_OBJECT

public:
    /// The learner's record at a moment; asked afresh for each exchange.
    using FactsSource = std::function<QString(Timestamp now)>;

    /// Of every exchange.
    static constexpr double temperature = 0.7;

    CoachSession(CoachHistory &history, const Clock &clock, const ConfigStore &config, FactsSource facts,
        AIClientFactory newClient, QObject *parent = nullptr);

    const QList<CoachDay> &history() const { return m_history.days(); }

    /// When the window is shown: goes on with today's conversation, or begins it with a briefing.
    void open();
    /// Begins today's conversation anew. The one that there is stays stored, and comes back if nothing of the
    /// new one does.
    void writeBriefing();
    /// There is no conversation, and none is on its way.
    bool isBriefingMissing() const { return messages().isEmpty() && !isAnswering(); }

    /// What the AI is sent for a briefing.
    static QList<ChatMessage> briefingMessages(
        const QString &facts, const std::optional<CoachHistory::Briefing> &previous);

private:
    QList<ChatMessage> exchangeFor(const QString &question) const override;
    void questionFailed() override;
    void answerEnded() override;

    QString today() const;
    QList<Message> said() const;
    void save();

    const Clock &m_clock;
    const FactsSource m_facts;
    CoachHistory &m_history;
    QList<Message> m_replaced; // by the briefing that is being written
};

} // namespace nimbrelle
