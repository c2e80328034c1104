#include "support/FakeAIClient.h"

#include "ai/AIError.h"
#include "frame/Failure.h"
#include "support/Await.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

// The flows of the program are tested with it, so it must behave as the real client does.
TEST(FakeAI, AnswersInAnyOrderAndStopsAtOnce)
{
    FakeAI ai;
    const AIClientFactory make = ai.factory();
    std::stop_source source;
    Running<Translation> first(make({})->translate(u"one"_s));
    Running<Translation> second(make({})->translate(u"two"_s));
    Running<Translation> stopped(make({})->translate(u"three"_s, source.get_token()));
    ai.reply(Translation{u"二"_s, {}}, 1);
    EXPECT_EQ(second.result().translationZh, u"二"_s);
    EXPECT_FALSE(first.isDone());
    source.request_stop();
    EXPECT_TRUE(stopped.isDone());
    EXPECT_THROW(stopped.result(), Cancelled);
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_THROW(first.result(), AIError);
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(ai.calls()[1].arguments, QStringList{u"two"_s});
}

TEST(FakeAI, StreamsPieceByPiece)
{
    FakeAI ai;
    const auto client = ai.factory()({});
    RunningStream stream(client->streamChat({{u"user"_s, u"问"_s}}, 0.5));
    ai.piece(u"一"_s);
    EXPECT_EQ(stream.pieces(), QStringList{u"一"_s});
    ai.piece(u"二"_s);
    ai.endStream();
    EXPECT_EQ(stream.result(), (QStringList{u"一"_s, u"二"_s}));
    EXPECT_EQ(ai.calls().first().temperature, 0.5);

    ai.piece(u"三"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    RunningStream failing(client->streamChat({}, 0.5));
    EXPECT_THROW(failing.result(), AIError);
    EXPECT_EQ(failing.pieces(), QStringList{u"三"_s});
}

} // namespace
