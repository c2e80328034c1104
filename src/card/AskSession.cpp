#include "card/AskSession.h"

#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "frame/Text.h"
#include "notebook/WordStore.h"

#include <algorithm>

namespace nimbrelle {

namespace {

constexpr double temperature = 0.5;

QString systemPrompt()
{
    return QStringLiteral("你是一位耐心的英语老师。学生是中文母语的成年人，英语大约初中水平，主要读 "
                          "Reddit、论坛和技术文档，有 ADHD，长段文字容易看不进去。\n"
                          "用简体中文回答，要求：\n"
                          "- 简短、直接，先给结论，一般不超过 200 字\n"
                          "- 多用具体例子，少用语法术语；必须用术语时顺便用一句大白话解释\n"
                          "- 如果是网络俚语或口语，说明在什么场合用、正式场合该怎么说\n"
                          "- 可以用 **加粗** 和 - 列表，不要用标题、表格和 emoji");
}

} // namespace

AskSession::AskSession(const Clock &clock, const ConfigStore &config, WordStore &words,
    AIClientFactory newClient, QObject *parent)
    : QObject(parent), m_clock(clock), m_config(config), m_words(words), m_newClient(std::move(newClient))
{
}

AskSession::~AskSession() = default;

bool AskSession::canSend() const
{
    return !m_isAnswering && !trimmedSpace(m_input).isEmpty();
}

bool AskSession::isStreaming(const Message &message) const
{
    return m_isAnswering && !m_messages.isEmpty() && m_messages.last().id == message.id;
}

QString AskSession::saveLabel() const
{
    return m_context.focusWord ? QStringLiteral("存到「") + *m_context.focusWord + u'」'
                               : QStringLiteral("存为句子笔记");
}

void AskSession::start(const AskContext &context, std::optional<QuickQuestion> question)
{
    m_task.cancel();
    m_context = context;
    m_messages.clear();
    m_input.clear();
    m_error.clear();
    m_savedIDs.clear();
    m_isAnswering = false;
    emit started();
    if (question)
        sendQuestion(*question);
}

void AskSession::setInput(const QString &input)
{
    if (m_input == input)
        return;
    m_input = input;
    emit inputChanged();
}

void AskSession::sendInput()
{
    if (!canSend())
        return;
    const QString text = trimmedSpace(m_input);
    setInput(QString());
    send(text, text);
}

void AskSession::sendQuestion(QuickQuestion question)
{
    send(prompt(question, m_context), label(question));
}

void AskSession::send(const QString &text, const QString &shown)
{
    if (m_isAnswering)
        return;
    const QList<ChatMessage> exchange = exchangeFor(text);
    m_error.clear();
    m_messages.append({QUuid::createUuid(), true, shown});
    m_messages.append({QUuid::createUuid(), false, QString()});
    m_isAnswering = true;
    emit messagesChanged();
    emit stateChanged();
    receive(exchange, m_messages.size() - 1, m_task.renew());
}

QList<ChatMessage> AskSession::exchangeFor(const QString &text) const
{
    const QString user = QStringLiteral("user");
    QList<ChatMessage> exchange{{QStringLiteral("system"), systemPrompt()}, {user, m_context.contextText()}};
    for (const Message &message : m_messages)
        exchange.append({message.isUser ? user : QStringLiteral("assistant"), message.text});
    exchange.append({user, text});
    return exchange;
}

// A new conversation or a stop cancels the flow, so that no piece of an old answer lands anywhere.
QCoro::Task<> AskSession::receive(QList<ChatMessage> exchange, qsizetype index, std::stop_token stop)
{
    try {
        const auto client = m_newClient(m_config.config());
        auto stream = client->streamChat(std::move(exchange), temperature, stop);
        auto piece = co_await stream.begin();
        while (!stop.stop_requested() && piece != stream.end()) {
            m_messages[index].text += *piece;
            emit messageGrew(index);
            co_await ++piece;
        }
        if (!stop.stop_requested())
            endAnswer();
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            fail(index, Failure::shownText(failure));
    }
}

void AskSession::fail(qsizetype index, const QString &text)
{
    if (m_messages[index].text.isEmpty()) {
        m_messages.remove(index - 1, 2); // the question goes with its empty answer
        emit messagesChanged();
    }
    m_error = text;
    endAnswer();
}

void AskSession::endAnswer()
{
    m_isAnswering = false;
    emit stateChanged();
}

void AskSession::stop()
{
    if (!m_isAnswering)
        return;
    m_isAnswering = false;
    m_task.cancel();
    emit stateChanged();
}

void AskSession::save(const QUuid &id)
{
    const auto message = std::find_if(m_messages.cbegin(), m_messages.cend(),
        [&id](const Message &candidate) { return candidate.id == id; });
    if (message == m_messages.cend() || message->isUser)
        return;
    const AINote note = noteOf(message - m_messages.cbegin());
    if (!keepWithWord(note))
        m_words.addSentenceNote(note);
    m_savedIDs.insert(id);
    emit stateChanged();
}

AINote AskSession::noteOf(qsizetype index) const
{
    AINote note{.id = QUuid::createUuid(), .answer = m_messages[index].text};
    if (index > 0)
        note.question = m_messages[index - 1].text;
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
