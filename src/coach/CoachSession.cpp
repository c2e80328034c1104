#include "coach/CoachSession.h"

#include "coach/CoachPrompts.h"
#include "frame/Clock.h"
#include "frame/ConfigStore.h"
#include "frame/DayKey.h"
#include "frame/Failure.h"
#include "frame/Text.h"

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype quotedOfBriefing = 900;

ChatMessage systemMessage()
{
    return {u"system"_s, prompts::coach()};
}

ChatMessage userMessage(const QString &content)
{
    return {u"user"_s, content};
}

} // namespace

CoachSession::CoachSession(const AppPaths &paths, const Clock &clock, const ConfigStore &config,
    FactsSource facts, AIClientFactory newClient, QObject *parent)
    : QObject(parent)
    , m_clock(clock)
    , m_config(config)
    , m_facts(std::move(facts))
    , m_newClient(std::move(newClient))
    , m_history(paths)
{
}

CoachSession::~CoachSession() = default;

bool CoachSession::isStreaming(const CoachMessage &message) const
{
    return m_isAnswering && !m_messages.isEmpty() && m_messages.last().id == message.id;
}

QString CoachSession::today() const
{
    return DayKey::string(m_clock.now());
}

void CoachSession::open()
{
    m_error.clear();
    const bool hasToday = !history().isEmpty() && history().last().day == today();
    if (hasToday && !m_isAnswering)
        m_messages = history().last().messages;
    emit changed();
    if (hasToday ? m_messages.isEmpty() : !m_isAnswering)
        writeBriefing();
}

void CoachSession::writeBriefing()
{
    m_messages.clear();
    answer(briefingMessages(m_facts(m_clock.now()), m_history.briefingBefore(today())));
}

QList<ChatMessage> CoachSession::briefingMessages(
    const QString &facts, const std::optional<CoachHistory::Briefing> &previous)
{
    QString request = u"这是学习记录：\n"_s + facts;
    if (previous)
        request += u"\n\n你上次（"_s + previous->day + u"）写的简报：\n"_s
            + firstCharacters(previous->text, quotedOfBriefing);
    return {systemMessage(), userMessage(request + prompts::briefingTask())};
}

void CoachSession::setInput(const QString &input)
{
    if (m_input == input)
        return;
    m_input = input;
    emit inputChanged();
}

void CoachSession::send(const std::optional<QString> &text, const std::optional<QString> &shown)
{
    const QString content = trimmedSpace(text.value_or(m_input));
    if (content.isEmpty() || m_isAnswering)
        return;
    const QList<ChatMessage> exchange = chatMessages(content);
    m_messages.append({QUuid::createUuid(), false, content, shown});
    if (!text)
        setInput(QString());
    answer(exchange);
}

// The record goes along with every question, so that the coach knows of a review a minute ago. The request
// before it is made up: it makes the briefing read as the coach's answer.
QList<ChatMessage> CoachSession::chatMessages(const QString &content) const
{
    QList<ChatMessage> exchange{systemMessage(),
        userMessage(u"这是我现在的学习记录：\n"_s + m_facts(m_clock.now()) + u"\n\n先写今天的简报。"_s)};
    for (const CoachMessage &message : m_messages) {
        if (!message.text.isEmpty())
            exchange.append({message.fromCoach ? u"assistant"_s : u"user"_s, message.text});
    }
    exchange.append(userMessage(content + u"\n（像教练聊天一样回答，一般 150～300 字，具体到我的词。）"_s));
    return exchange;
}

void CoachSession::answer(QList<ChatMessage> exchange)
{
    m_error.clear();
    m_messages.append({QUuid::createUuid(), true, QString(), std::nullopt});
    m_isAnswering = true;
    const qsizetype index = m_messages.size() - 1;
    const std::stop_token token = m_task.renew();
    emit changed();
    stream(std::move(exchange), index, token);
}

// A replaced conversation, a stop and the session's end all cancel the flow first, so an index stays good as
// long as the token does.
QCoro::Task<> CoachSession::stream(QList<ChatMessage> exchange, qsizetype index, std::stop_token stop)
{
    try {
        const auto client = m_newClient(m_config.config());
        auto pieces = client->streamChat(std::move(exchange), temperature, stop);
        auto piece = co_await pieces.begin();
        while (!stop.stop_requested() && piece != pieces.end()) {
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

void CoachSession::fail(qsizetype index, const QString &text)
{
    if (m_messages[index].text.isEmpty()) {
        m_messages.removeAt(index);
        const bool isTyped = index > 0 && !m_messages[index - 1].fromCoach && !m_messages[index - 1].shown;
        if (isTyped)
            giveBack(m_messages.takeAt(index - 1).text);
    }
    m_error = text;
    endAnswer();
}

// What was typed while the answer was awaited stays as well.
void CoachSession::giveBack(const QString &text)
{
    setInput(trimmedSpace(m_input).isEmpty() ? text : text + u'\n' + m_input);
}

void CoachSession::stop()
{
    if (!m_isAnswering)
        return;
    m_isAnswering = false;
    m_task.cancel();
    save();
    emit changed();
}

void CoachSession::endAnswer()
{
    m_isAnswering = false;
    save();
    emit changed();
}

void CoachSession::save()
{
    QList<CoachMessage> said;
    for (const CoachMessage &message : std::as_const(m_messages)) {
        if (!message.text.isEmpty())
            said.append(message);
    }
    m_history.put(today(), said);
}

} // namespace nimbrelle
