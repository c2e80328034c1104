#include "coach/CoachSession.h"

#include "coach/CoachPrompts.h"
#include "frame/Clock.h"
#include "frame/DayKey.h"
#include "frame/Text.h"

#include <utility>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype quotedOfBriefing = 900;

CoachMessage recordOf(const Conversation::Message &message)
{
    return {.id = message.id, .fromCoach = !message.isUser, .text = message.text, .shown = message.shown};
}

QList<Conversation::Message> messagesOf(const CoachDay &day)
{
    QList<Conversation::Message> messages;
    for (const CoachMessage &record : day.messages)
        messages.append(
            {.id = record.id, .isUser = !record.fromCoach, .text = record.text, .shown = record.shown});
    return messages;
}

} // namespace

CoachSession::CoachSession(CoachHistory &history, const Clock &clock, const ConfigStore &config,
    FactsSource facts, AIClientFactory newClient, QObject *parent)
    : Conversation(config, std::move(newClient), temperature, parent)
    , m_clock(clock)
    , m_facts(std::move(facts))
    , m_history(history)
{
}

QString CoachSession::today() const
{
    return DayKey::string(m_clock.now());
}

void CoachSession::open()
{
    clearError();
    const bool hasToday = !history().isEmpty() && history().last().day == today();
    if (!isAnswering())
        setMessages(hasToday ? messagesOf(history().last()) : QList<Message>());
    emit changed();
    if (isBriefingMissing())
        writeBriefing();
}

void CoachSession::writeBriefing()
{
    const QList<Message> kept = said();
    if (!kept.isEmpty() || !isAnswering()) // else it is begun once more before anything has come
        m_replaced = kept;
    setMessages({});
    answer(briefingMessages(m_facts(m_clock.now()), m_history.briefingBefore(today())));
}

QList<ChatMessage> CoachSession::briefingMessages(
    const QString &facts, const std::optional<CoachHistory::Briefing> &previous)
{
    QString request = u"这是学习记录：\n"_s + facts;
    if (previous)
        request += u"\n\n你上次（"_s + previous->day + u"）写的简报：\n"_s
            + firstCharacters(previous->text, quotedOfBriefing);
    return {ChatMessage::system(prompts::coach()), ChatMessage::user(request + prompts::briefingTask())};
}

// The record goes along with every question, so that the coach knows of a review a minute ago. The request
// before it is made up: it makes the briefing read as the coach's answer.
QList<ChatMessage> CoachSession::exchangeFor(const QString &question) const
{
    QList<ChatMessage> exchange{ChatMessage::system(prompts::coach()),
        ChatMessage::user(
            u"这是我现在的学习记录：\n"_s + m_facts(m_clock.now()) + u"\n\n先写今天的简报。"_s)};
    for (const Message &message : said())
        exchange.append(chatMessage(message));
    exchange.append(
        ChatMessage::user(question + u"\n（像教练聊天一样回答，一般 150～300 字，具体到我的词。）"_s));
    return exchange;
}

// A ready-made question stays. A typed one goes back to the field, where what was typed meanwhile stays too.
void CoachSession::questionFailed()
{
    if (messages().last().shown)
        return;
    const QString question = takeLastMessage().text;
    setInput(trimmedSpace(input()).isEmpty() ? question : question + u'\n' + input());
}

// An answer without a word leaves no bubble that waits.
void CoachSession::answerEnded()
{
    const QList<Message> replaced = std::exchange(m_replaced, {});
    setMessages(said());
    if (messages().isEmpty())
        setMessages(replaced);
    else
        save();
}

QList<Conversation::Message> CoachSession::said() const
{
    QList<Message> said = messages();
    said.removeIf([](const Message &message) { return message.text.isEmpty(); });
    return said;
}

void CoachSession::save()
{
    QList<CoachMessage> records;
    for (const Message &message : said())
        records.append(recordOf(message));
    m_history.put(today(), records);
}

} // namespace nimbrelle
