#include "main/SelfTestCoach.h"

#include "ai/AIError.h"
#include "coach/CoachSession.h"
#include "coach/SampleLearner.h"
#include "frame/Text.h"
#include "support/Await.h"
#include "support/FakeAIClient.h"
#include "support/Printers.h"

#include <QDir>
#include <QTextStream>

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class SelfTestCoach : public testing::Test, protected SampleLearner {
protected:
    QString printed()
    {
        QString text;
        QTextStream out(&text);
        SelfTest::runCoach(facts, config.config(), now, out);
        return text;
    }
};

TEST_F(SelfTestCoach, PrintsTheRecordAndTodaysReview)
{
    const QString length = QString::number(characterCount(expectedFacts()));
    EXPECT_EQ(printed(),
        expectedFacts() + u"\n\n--- 今天的复习 ---\n"_s + expectedReview() + u"\nOK "_s + length
            + u" 字，没有密钥\n"_s);
}

TEST_F(SelfTestCoach, FindsAKeyOrTokenInTheRecord)
{
    const auto verdict = [this](const QString &key, const QString &token) {
        configure([&](AppConfig &changed) {
            changed.apiKey = key;
            changed.syncToken = token;
        });
        return printed().section(u'\n', -2, -2).section(u' ', 0, 0);
    };
    EXPECT_EQ(verdict(u"sk-1"_s, u"t-1"_s), u"OK"_s);
    EXPECT_EQ(verdict(u"forum.example.org"_s, u"t-1"_s), u"FAIL"_s);
    EXPECT_EQ(verdict(u"forum.example.org\n"_s, QString()), u"FAIL"_s) << "as it is sent, without the break";
    EXPECT_EQ(verdict(QString(), u"reluctant to"_s), u"FAIL"_s);
    EXPECT_EQ(verdict(QString(), u"拼写（听写"_s), u"OK"_s) << "only the record counts";
    EXPECT_TRUE(printed().endsWith(u" 字，没有密钥\n"_s));
    verdict(u"forum.example.org"_s, QString());
    EXPECT_TRUE(printed().endsWith(u"\nFAIL 记录里有密钥\n"_s));
}

TEST_F(SelfTestCoach, StreamsABriefingAndWritesNothing)
{
    FakeAI ai;
    const auto client = ai.factory()({});
    const CoachHistory::Briefing previous{u"2026-03-13"_s, u"上次的话"_s};
    const QStringList files = QDir(paths.supportDir).entryList(QDir::Files);
    QString text;
    QTextStream out(&text);
    SelfTest::runCoachAI(u"记录"_s, previous, *client, out);
    ai.piece(u"今天"_s);
    EXPECT_EQ(text, u"今天"_s) << "as it comes";
    ai.piece(u"👨‍👩‍👧"_s);
    ai.endStream();
    EXPECT_EQ(text, u"今天👨‍👩‍👧\n3 字\n"_s);
    EXPECT_EQ(ai.calls().first().messages, CoachSession::briefingMessages(u"记录"_s, previous));
    EXPECT_EQ(ai.calls().first().temperature, 0.7);
    EXPECT_EQ(QDir(paths.supportDir).entryList(QDir::Files), files);
}

TEST_F(SelfTestCoach, PrintsWhatWentWrong)
{
    FakeAI ai;
    const auto client = ai.factory()({});
    QString text;
    QTextStream out(&text);
    SelfTest::runCoachAI(u"记录"_s, std::nullopt, *client, out);
    ai.fail(AIError(AIError::Kind::noKey));
    SelfTest::runCoachAI(u"记录"_s, std::nullopt, *client, out);
    ai.piece(u"一半"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(text,
        u"FAIL 还没有填 DeepSeek API key，请在设置里填写。\n一半\nFAIL DeepSeek 账户余额不足，请先充值。\n"_s);
}

} // namespace
