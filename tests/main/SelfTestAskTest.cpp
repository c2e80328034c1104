#include "main/SelfTestAsk.h"

#include "ai/AIError.h"
#include "support/FakeAIClient.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {

class SelfTestAsk : public testing::Test {
protected:
    SelfTestAsk() { SelfTest::runAsk(*client, out); }

    FakeAI ai;
    std::unique_ptr<AIClient> client = ai.factory()({});
    QString printed;
    QTextStream out{&printed};
};

TEST_F(SelfTestAsk, CountsAndJoinsThePieces)
{
    ASSERT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(ai.calls().first().temperature, 0.5);
    EXPECT_EQ(ai.calls().first().messages,
        (QList<ChatMessage>{{u"user"_s, u"用一句中文解释 ngl 是什么意思，不超过 20 字。"_s}}));
    ai.piece(u"说实话，"_s);
    ai.piece(u"%1 老实说"_s);
    ai.endStream();
    EXPECT_EQ(printed, u"OK 收到 2 段：说实话，%1 老实说\n"_s);
}

TEST_F(SelfTestAsk, TellsWhatWentWrong)
{
    ai.fail(AIError(AIError::Kind::unauthorized));
    EXPECT_EQ(printed, u"FAIL API key 不正确，请在设置里检查一下。\n"_s);
}

} // namespace nimbrelle
