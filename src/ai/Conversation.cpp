#include "ai/Conversation.h"

#include "ai/AIError.h"
#include "frame/ConfigStore.h"
#include "frame/Failure.h"
#include "frame/Text.h"

namespace nimbrelle {

Conversation::Conversation(
    const ConfigStore &config, AIClientFactory newClient, double temperature, QObject *parent)
    : QObject(parent), m_config(config), m_newClient(std::move(newClient)), m_temperature(temperature)
{
}

Conversation::~Conversation() = default;

bool Conversation::isStreaming(const Message &message) const
{
    return m_isAnswering && !m_messages.isEmpty() && m_messages.last().id == message.id;
}

void Conversation::setInput(const QString &input)
{
    if (m_input == input)
        return;
    m_input = input;
    emit inputChanged();
}

void Conversation::send(const std::optional<QString> &text, const std::optional<QString> &shown)
{
    const QString question = trimmedSpace(text.value_or(m_input));
    if (question.isEmpty() || m_isAnswering)
        return;
    const QList<ChatMessage> exchange = exchangeFor(question);
    m_messages.append(questionMessage(question, shown));
    if (!text)
        setInput(QString());
    answer(exchange);
}

Conversation::Message Conversation::questionMessage(
    const QString &question, const std::optional<QString> &shown) const
{
    return {.id = QUuid::createUuid(), .isUser = true, .text = question, .shown = shown};
}

ChatMessage Conversation::chatMessage(const Message &message)
{
    return message.isUser ? ChatMessage::user(message.text) : ChatMessage::assistant(message.text);
}

void Conversation::setMessages(const QList<Message> &messages)
{
    m_isAnswering = false;
    m_task.cancel();
    m_messages = messages;
}

void Conversation::answer(const QList<ChatMessage> &exchange)
{
    clearError();
    m_messages.append(Message{.id = QUuid::createUuid()});
    m_isAnswering = true;
    const std::stop_token token = m_task.renew();
    emit changed();
    receive(exchange, token);
}

// Whatever replaces the messages, ends the answer or deletes the conversation stops the flow first, so the
// answer is the last message as long as the token is good. A slot of messageGrew may do any of these.
QCoro::Task<> Conversation::receive(QList<ChatMessage> exchange, std::stop_token stop)
{
    try {
        const auto client = m_newClient(m_config.config());
        auto pieces = client->streamChat(std::move(exchange), m_temperature, stop);
        auto piece = co_await pieces.begin();
        while (!stop.stop_requested() && piece != pieces.end()) {
            take(*piece);
            co_await ++piece;
        }
        if (!stop.stop_requested() && m_messages.last().text.isEmpty())
            throw AIError(AIError::Kind::badResponse);
        if (!stop.stop_requested())
            endAnswer();
    } catch (const std::exception &failure) {
        if (!stop.stop_requested())
            fail(Failure::shownText(failure));
    }
}

void Conversation::take(const QString &piece)
{
    m_messages.last().text += piece;
    emit messageGrew(m_messages.size() - 1);
}

void Conversation::fail(const QString &error)
{
    if (m_messages.last().text.isEmpty()) {
        m_messages.removeLast();
        if (!m_messages.isEmpty() && m_messages.last().isUser)
            questionFailed();
    }
    m_error = error;
    endAnswer();
}

void Conversation::stop()
{
    if (!m_isAnswering)
        return;
    m_isAnswering = false;
    m_task.cancel();
    endAnswer();
}

void Conversation::endAnswer()
{
    m_isAnswering = false;
    answerEnded();
    emit changed();
}

} // namespace nimbrelle
