#pragma once

#include "ai/Conversation.h"
#include "card/AskContext.h"

#include <QSet>

namespace nimbrelle {

class Clock;
class WordStore;
struct AINote;

/// The conversation behind the Ask window. One session is used again and again; nothing of a conversation
/// outlives it but the answers that the user saved.
class AskSession : public Conversation {
    Q_OBJECT

public:
    AskSession(const Clock &clock, const ConfigStore &config, WordStore &words, AIClientFactory newClient,
        QObject *parent = nullptr);

    const AskContext &context() const { return m_context; }
    const QSet<QUuid> &savedIDs() const { return m_savedIDs; }
    QString saveLabel() const;

    /// Begins a new conversation, with `question` as its first if there is one.
    void start(const AskContext &context, std::optional<QuickQuestion> question);
    void sendQuestion(QuickQuestion question);

    /// Keeps an answer as a note, of the word in question if there is one. An unknown id does nothing.
    void save(const QUuid &id);

signals:
    void started(); ///< everything is new

private:
    QList<ChatMessage> exchangeFor(const QString &question) const override;
    Message questionMessage(const QString &question, const std::optional<QString> &shown) const override;
    void questionFailed() override { takeLastMessage(); }

    AINote noteOf(qsizetype index) const;
    bool keepWithWord(const AINote &note);

    const Clock &m_clock;
    WordStore &m_words;

    AskContext m_context;
    QSet<QUuid> m_savedIDs;
};

} // namespace nimbrelle
