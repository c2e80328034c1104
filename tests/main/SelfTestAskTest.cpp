#include "main/SelfTestAsk.h"

#include "ai/AIError.h"
#include "support/FakeAIClient.h"
#include "support/Printers.h"

#include <QTextStream>

#include <gtest/gtest.h>

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
        (QList<ChatMessage>{
            {QStringLiteral("user"), QStringLiteral("用一句中文解释 ngl 是什么意思，不超过 20 字。")}}));
    ai.piece(QStringLiteral("说实话，"));
    ai.piece(QStringLiteral("%1 老实说"));
    ai.endStream();
    EXPECT_EQ(printed, QStringLiteral("OK 收到 2 段：说实话，%1 老实说\n"));
}

TEST_F(SelfTestAsk, TellsWhatWentWrong)
{
    ai.fail(AIError(AIError::Kind::unauthorized));
    EXPECT_EQ(printed, QStringLiteral("FAIL API key 不正确，请在设置里检查一下。\n"));
}

} // namespace nimbrelle
