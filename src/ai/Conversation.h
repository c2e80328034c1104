#pragma once

#include "ai/AIClient.h"
#include "frame/TaskSlot.h"

#include <QObject>
#include <QUuid>

namespace nimbrelle {

class ConfigStore;

/// A conversation with the AI: what was said, the text field, and at most one answer at a time, which grows
/// piece by piece. A derived session decides what is sent with a question, what becomes of a question that
/// fails, and what is kept. Main thread only; all handed in must outlive it.
class Conversation : public QObject {
    Q_OBJECT

public:
    struct Message {
        QUuid id;
        bool isUser = false; ///< false for the AI
        QString text; ///< what was said, and what the AI gets as history
        std::optional<QString> shown; ///< what is shown in its place: the label of a ready-made question

        QString shownText() const { return shown.value_or(text); }

        bool operator==(const Message &) const = default;
    };

    ~Conversation() override;

    const QList<Message> &messages() const { return m_messages; }
    const QString &input() const { return m_input; } ///< the text field
    bool isAnswering() const { return m_isAnswering; }
    const QString &error() const { return m_error; } ///< empty for none
    /// Whether pieces of this message may still come.
    bool isStreaming(const Message &message) const;

    void setInput(const QString &input);
    /// Sends the input, or `text` in its place with `shown` as what is shown of it. Blank text, and anything
    /// while an answer is coming, is not sent.
    void send(const std::optional<QString> &text = std::nullopt,
        const std::optional<QString> &shown = std::nullopt);
    /// Ends the answer that is coming; what has come of it stays.
    void stop();

signals:
    void changed(); ///< anything above but a message that grew or the input
    void messageGrew(qsizetype index);
    void inputChanged();

protected:
    Conversation(const ConfigStore &config, AIClientFactory newClient, double temperature, QObject *parent);

    /// @name Parts of an operation; they leave it to the caller to announce the change.
    /// @{
    /// Also ends the answer that is coming.
    void setMessages(const QList<Message> &messages);
    Message takeLastMessage() { return m_messages.takeLast(); }
    void clearError() { m_error.clear(); }
    /// @}

    /// Sends the exchange; its answer grows in a new message at the end.
    void answer(const QList<ChatMessage> &exchange);

    /// The message as it is sent.
    static ChatMessage chatMessage(const Message &message);

private:
    /// All that is sent for a question, which is not among the messages yet.
    virtual QList<ChatMessage> exchangeFor(const QString &question) const = 0;
    /// The message of a question; `shown` as given to send().
    virtual Message questionMessage(const QString &question, const std::optional<QString> &shown) const;
    /// The question at the end of the messages failed before any piece of an answer came.
    virtual void questionFailed() = 0;
    /// An answer is complete, stopped or has failed; changed() follows.
    virtual void answerEnded() { }

    QCoro::Task<> receive(QList<ChatMessage> exchange, std::stop_token stop);
    void take(const QString &piece);
    void fail(const QString &error);
    void endAnswer();

    const ConfigStore &m_config;
    const AIClientFactory m_newClient;
    const double m_temperature;

    QList<Message> m_messages;
    QString m_input;
    bool m_isAnswering = false;
    QString m_error;
    TaskSlot m_task;
};

} // namespace nimbrelle
