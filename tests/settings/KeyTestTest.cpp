#include "settings/KeyTest.h"

#include "ai/AIError.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

class KeyTestTest : public testing::Test {
protected:
    void setKey(const QString &key)
    {
        notebook.configure([&](AppConfig &config) { config.apiKey = key; });
    }

    Notebook notebook;
    FakeAI ai;
    KeyTest test{notebook.config, ai.factory()};
};

TEST_F(KeyTestTest, NeedsAKeyAndRunsOnce)
{
    EXPECT_FALSE(test.canStart());
    test.start();
    EXPECT_TRUE(ai.calls().isEmpty());
    setKey(u"sk-1"_s);
    test.start();
    test.start();
    EXPECT_FALSE(test.canStart());
    ASSERT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(ai.calls().first().arguments,
        (QStringList{u"reluctant"_s, u"I was reluctant to post this, but here we go."_s}));
    ai.reply(Notebook::explained("reluctant"));
    EXPECT_EQ(test.result(), (KeyTest::Result{true, u"成功：reluctant = 意思"_s}));
    EXPECT_TRUE(test.canStart());
}

TEST_F(KeyTestTest, ShowsWhatFailedAndForgetsItAtTheNextStart)
{
    setKey(u"sk-1"_s);
    test.start();
    ai.fail(AIError(AIError::Kind::unauthorized));
    EXPECT_EQ(test.result(), (KeyTest::Result{false, AIError(AIError::Kind::unauthorized).text()}));
    setKey(u"sk-2"_s);
    EXPECT_EQ(test.result(), std::nullopt);
    test.start();
    setKey(u"sk-3"_s); // of which the answer to come would tell nothing
    EXPECT_FALSE(test.isRunning());
    EXPECT_EQ(ai.waiting(), 0);
    setKey(u"sk-2"_s);
    test.start();
    notebook.configure([](AppConfig &config) { config.learningSlots = 8; });
    EXPECT_TRUE(test.isRunning());
    EXPECT_EQ(ai.calls().last().config.apiKey, u"sk-2"_s);
}

TEST(KeyTest, MayGoWhileItRuns)
{
    Notebook notebook;
    FakeAI ai;
    notebook.configure([](AppConfig &config) { config.apiKey = u"sk-1"_s; });
    std::optional<KeyTest> test(std::in_place, notebook.config, ai.factory());
    test->start();
    test.reset();
    EXPECT_EQ(ai.waiting(), 0);
}

} // namespace
