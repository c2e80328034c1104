#include "main/SelfTestCoach.h"

#include "ai/AIClient.h"
#include "coach/CoachFacts.h"
#include "coach/CoachSession.h"
#include "frame/Failure.h"
#include "frame/Text.h"

#include <QTextStream>

#include <algorithm>

namespace nimbrelle::SelfTest {

using namespace Qt::StringLiterals;

namespace {

// Trimmed as they are when they are sent: a stray line break in the settings hides no leak.
bool holdsSecret(const QString &facts, const AppConfig &config)
{
    const QStringList secrets{trimmedSpace(config.apiKey), trimmedSpace(config.syncToken)};
    return std::any_of(secrets.cbegin(), secrets.cend(),
        [&facts](const QString &secret) { return !secret.isEmpty() && facts.contains(secret); });
}

} // namespace

void runCoach(const CoachFacts &facts, const AppConfig &config, Timestamp now, QTextStream &out)
{
    const QString text = facts.build(now);
    out << text << Qt::endl;
    out << u"\n--- 今天的复习 ---\n"_s << facts.todayReview(now) << Qt::endl;
    if (holdsSecret(text, config))
        out << u"FAIL 记录里有密钥"_s << Qt::endl;
    else
        out << u"OK %1 字，没有密钥"_s.arg(characterCount(text)) << Qt::endl;
}

QCoro::Task<> runCoachAI(
    QString facts, std::optional<CoachHistory::Briefing> previous, const AIClient &client, QTextStream &out)
{
    QString text;
    try {
        auto stream =
            client.streamChat(CoachSession::briefingMessages(facts, previous), CoachSession::temperature);
        auto piece = co_await stream.begin();
        while (piece != stream.end()) {
            text += *piece;
            out << *piece << Qt::flush;
            co_await ++piece;
        }
        out << u'\n' << characterCount(text) << u" 字"_s << Qt::endl;
    } catch (const Failure &failure) {
        out << (text.isEmpty() ? u"FAIL "_s : u"\nFAIL "_s) << failure.text() << Qt::endl;
    }
}

} // namespace nimbrelle::SelfTest
