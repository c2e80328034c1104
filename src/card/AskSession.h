#pragma once

#include "ai/AIClient.h"
#include "card/AskContext.h"
#include "frame/TaskSlot.h"

#include <QObject>
#include <QSet>
#include <QUuid>

namespace nimbrelle {

class Clock;
class ConfigStore;
class WordStore;

/// The conversation behind the Ask window. One session is used again and again; nothing of a conversation
/// outlives it but the answers that the user saved. Main thread only.
class AskSession : public QObject {
    Q_OBJECT

public:
    struct Message {
        QUuid id;
        bool isUser = false;
        QString text; ///< what is shown, and what the model gets as history

        bool operator==(const Message &) const = default;
    };

    AskSession(const Clock &clock, const ConfigStore &config, WordStore &words, AIClientFactory newClient,
        QObject *parent = nullptr);
    ~AskSession() override;

    const AskContext &context() const { return m_context; }
    const QList<Message> &messages() const { return m_messages; }
    const QString &input() const { return m_input; } ///< the text field
    bool isAnswering() const { return m_isAnswering; }
    const QString &error() const { return m_error; } ///< empty for none
    const QSet<QUuid> &savedIDs() const { return m_savedIDs; }

    /// Whether the input may be sent now.
    bool canSend() const;
    /// Whether pieces of this message may still come.
    bool isStreaming(const Message &message) const;
    QString saveLabel() const;

    /// Begins a new conversation, with `question` as its first if there is one.
    void start(const AskContext &context, std::optional<QuickQuestion> question);

    void setInput(const QString &input);
    void sendInput();
    void sendQuestion(QuickQuestion question);
    void stop();

    /// Keeps an answer as a note, of the word in question if there is one. An unknown id does nothing.
    void save(const QUuid &id);

signals:
    void started(); ///< everything is new
    void messagesChanged(); ///< added or removed
    void messageGrew(qsizetype index);
    void inputChanged();
    void stateChanged(); ///< answering, error or what is saved

private:
    void send(const QString &text, const QString &shown);
    QList<ChatMessage> exchangeFor(const QString &text) const;
    QCoro::Task<> receive(QList<ChatMessage> exchange, qsizetype index, std::stop_token stop);
    void fail(qsizetype index, const QString &text);
    void endAnswer();
    AINote noteOf(qsizetype index) const;
    bool keepWithWord(const AINote &note);

    const Clock &m_clock;
    const ConfigStore &m_config;
    WordStore &m_words;
    const AIClientFactory m_newClient;

    AskContext m_context;
    QList<Message> m_messages;
    QString m_input;
    bool m_isAnswering = false;
    QString m_error;
    QSet<QUuid> m_savedIDs;
    TaskSlot m_task;
};

} // namespace nimbrelle
