#pragma once

#include "ai/AIClient.h"
#include "coach/CoachHistory.h"
#include "frame/TaskSlot.h"
#include "frame/Timestamp.h"

#include <QObject>

namespace nimbrelle {

class AppPaths;
class Clock;
class ConfigStore;

/// The daily conversation with the AI coach: a briefing at the first opening of a day, then questions and
/// answers. Lives as long as the application, so that an answer may finish while its window is closed; a new
/// day is noticed only at open(). Main thread only.
class CoachSession : public QObject {
    Q_OBJECT

public:
    /// The learner's record at a moment; asked afresh for each exchange.
    using FactsSource = std::function<QString(Timestamp now)>;

    /// All of an exchange at this temperature.
    static constexpr double temperature = 0.7;

    CoachSession(const AppPaths &paths, const Clock &clock, const ConfigStore &config, FactsSource facts,
        AIClientFactory newClient, QObject *parent = nullptr);
    ~CoachSession() override;

    const QList<CoachMessage> &messages() const { return m_messages; } ///< the conversation on screen
    const QString &input() const { return m_input; } ///< the text field
    bool isAnswering() const { return m_isAnswering; }
    const QString &error() const { return m_error; } ///< empty for none
    const QList<CoachDay> &history() const { return m_history.days(); }

    /// Whether pieces of this message may still come.
    bool isStreaming(const CoachMessage &message) const;

    /// When the window is shown: goes on with today's conversation, or begins it with a briefing.
    void open();
    /// Begins today's conversation anew.
    void writeBriefing();
    void setInput(const QString &input);
    /// Sends the input, or `text` in its place with `shown` as what its bubble says. Blank text, and anything
    /// while an answer comes, is not sent.
    void send(const std::optional<QString> &text = std::nullopt,
        const std::optional<QString> &shown = std::nullopt);
    /// Ends the answer that comes and keeps what is there of it.
    void stop();

    /// What the AI is asked for a briefing.
    static QList<ChatMessage> briefingMessages(
        const QString &facts, const std::optional<CoachHistory::Briefing> &previous);

signals:
    void changed(); ///< anything above but a message that grew or the input
    void messageGrew(qsizetype index);
    void inputChanged();

private:
    QString today() const;
    QList<ChatMessage> chatMessages(const QString &content) const;
    void answer(QList<ChatMessage> exchange);
    QCoro::Task<> stream(QList<ChatMessage> exchange, qsizetype index, std::stop_token stop);
    void fail(qsizetype index, const QString &text);
    void giveBack(const QString &text);
    void endAnswer();
    void save();

    const Clock &m_clock;
    const ConfigStore &m_config;
    const FactsSource m_facts;
    const AIClientFactory m_newClient;

    CoachHistory m_history;
    QList<CoachMessage> m_messages;
    QString m_input;
    bool m_isAnswering = false;
    QString m_error;
    TaskSlot m_task;
};

} // namespace nimbrelle
