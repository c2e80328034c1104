#include "card/AskSession.h"

#include "frame/Clock.h"
#include "notebook/WordStore.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr double temperature = 0.5;

QString systemPrompt()
{
    return u"你是一位耐心的英语老师。学生是中文母语的成年人，英语大约初中水平，主要读 "
           "Reddit、论坛和技术文档，有 ADHD，长段文字容易看不进去。\n"
           "用简体中文回答，要求：\n"
           "- 简短、直接，先给结论，一般不超过 200 字\n"
           "- 多用具体例子，少用语法术语；必须用术语时顺便用一句大白话解释\n"
           "- 如果是网络俚语或口语，说明在什么场合用、正式场合该怎么说\n"
           "- 可以用 **加粗** 和 - 列表，不要用标题、表格和 emoji"_s;
}

} // namespace

AskSession::AskSession(const Clock &clock, const ConfigStore &config, WordStore &words,
    AIClientFactory newClient, QObject *parent)
    : Conversation(config, std::move(newClient), temperature, parent), m_clock(clock), m_words(words)
{
}

QString AskSession::saveLabel() const
{
    return m_context.focusWord ? u"存到「"_s + *m_context.focusWord + u'」' : u"存为句子笔记"_s;
}

void AskSession::start(const AskContext &context, std::optional<QuickQuestion> question)
{
    m_context = context;
    m_savedIDs.clear();
    setMessages({});
    clearError();
    setInput(QString());
    emit started();
    if (question)
        sendQuestion(*question);
}

void AskSession::sendQuestion(QuickQuestion question)
{
    send(prompt(question, m_context), label(question));
}

QList<ChatMessage> AskSession::exchangeFor(const QString &question) const
{
    QList<ChatMessage> exchange{
        ChatMessage::system(systemPrompt()), ChatMessage::user(m_context.contextText())};
    for (const Message &message : messages())
        exchange.append(chatMessage(message));
    exchange.append(ChatMessage::user(question));
    return exchange;
}

// The AI, too, finds only the short label in what was said before.
AskSession::Message AskSession::questionMessage(
    const QString &question, const std::optional<QString> &shown) const
{
    return {.id = QUuid::createUuid(), .isUser = true, .text = shown.value_or(question)};
}

void AskSession::save(const QUuid &id)
{
    const auto message = std::ranges::find(messages(), id, &Message::id);
    if (message == messages().cend() || message->isUser)
        return;
    const AINote note = noteOf(message - messages().cbegin());
    if (!keepWithWord(note))
        m_words.addSentenceNote(note);
    m_savedIDs.insert(id);
    emit changed();
}

AINote AskSession::noteOf(qsizetype index) const
{
    AINote note{.id = QUuid::createUuid(), .answer = messages()[index].text};
    if (index > 0)
        note.question = messages()[index - 1].text;
    note.original = m_context.original;
    note.translation = m_context.translation;
    if (m_context.source) {
        note.sourceApp = m_context.source->app;
        note.sourceURL = m_context.source->url;
        note.sourceTitle = m_context.source->title;
    }
    note.addedAt = m_clock.now();
    return note;
}

bool AskSession::keepWithWord(const AINote &note)
{
    if (!m_context.focusWord)
        return false;
    const QString &word = *m_context.focusWord;
    if (!m_words.findHeadword(word) && m_context.explanation)
        m_words.save(*m_context.explanation, m_context.source.value_or(PageSource()));
    if (!m_words.findHeadword(word))
        return false;
    m_words.addNote(note, word);
    return true;
}

} // namespace nimbrelle
