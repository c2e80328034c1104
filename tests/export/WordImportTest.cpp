#include "export/WordImport.h"

#include "ai/AIError.h"
#include "http/TransportError.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using State = WordImport::State;

namespace {

class WordImportTest : public testing::Test, protected Notebook {
protected:
    WordImportTest() { restart(); }

    /// As a new process would find things.
    void restart()
    {
        import.reset();
        ai.forgetCalls();
        import = std::make_unique<WordImport>(store, config, paths, clock, ai.factory());
    }

    QStringList asked() const
    {
        QStringList words;
        for (const FakeAI::Call &call : ai.calls())
            words += call.arguments;
        return words;
    }
    void answer(const char *headword) { ai.reply(LookupResult{.explanation = explained(headword)}); }
    QStringList headwords() const
    {
        QStringList names;
        for (const WordEntry &word : store.entries())
            names.prepend(word.headword);
        return names;
    }

    FakeAI ai;
    std::unique_ptr<WordImport> import;
};

} // namespace

TEST_F(WordImportTest, LooksUpOneWordAfterTheOtherAndLeavesWhatIsSaved)
{
    save("Walk");
    EXPECT_EQ(import->add({u"run"_s, u"walk"_s, u"gave up"_s, u"walks"_s}), 3);
    EXPECT_THAT(asked(), ElementsAre(u"run"_s)) << "one at a time";
    EXPECT_EQ(import->statusText(), u"正在查 1 / 3：run"_s);
    EXPECT_EQ(import->add({u"RUN"_s, u"hop"_s}), 2)
        << "both wait, and what waited already is not asked twice";
    answer("run");
    answer("give up");
    const WordEntry walk = word("walk");
    answer("walk"); // a form of a word that is saved
    answer("hop");
    EXPECT_THAT(asked(), ElementsAre(u"run"_s, u"gave up"_s, u"walks"_s, u"hop"_s));
    EXPECT_THAT(headwords(), ElementsAre(u"Walk"_s, u"run"_s, u"give up"_s, u"hop"_s));
    EXPECT_EQ(word("walk"), walk);
    EXPECT_EQ(word("run").sourceKeys, std::nullopt) << "a list is no place to read";
    EXPECT_EQ(import->state(), State::idle);
    EXPECT_EQ(import->statusText(), u"查完了：存了 3 个词，1 个已经在生词本里"_s);
}

TEST_F(WordImportTest, GoesOnWhereItWasAfterARestart)
{
    import->add({u"run"_s, u"hop"_s, u"fly"_s});
    answer("run");
    restart();
    EXPECT_TRUE(asked().isEmpty()) << "before the start it does nothing";
    import->start();
    EXPECT_THAT(asked(), ElementsAre(u"hop"_s));
    EXPECT_EQ(import->statusText(), u"正在查 2 / 3：hop"_s);
    import->pause();
    restart();
    import->start();
    EXPECT_TRUE(asked().isEmpty()) << "what the user paused stays so";
    EXPECT_EQ(import->statusText(), u"已暂停，还有 2 个词没查"_s);
    import->toggle();
    answer("hop");
    answer("fly");
    EXPECT_THAT(headwords(), ElementsAre(u"run"_s, u"hop"_s, u"fly"_s));
    restart();
    import->start();
    EXPECT_EQ(import->statusText(), QString()) << "an import that has ended is forgotten";
}

TEST_F(WordImportTest, APausedLookupCostsNothing)
{
    import->add({u"run"_s});
    import->pause();
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(import->toggleLabel(), u"继续"_s);
    import->resume();
    EXPECT_THAT(asked(), ElementsAre(u"run"_s, u"run"_s));
    answer("run");
    EXPECT_THAT(headwords(), ElementsAre(u"run"_s));
}

TEST_F(WordImportTest, StopsAtTheFirstWrongKeyAndKeepsWhatWaits)
{
    const std::pair<AIError, const char *> cases[]{
        {AIError(AIError::Kind::unauthorized), "API key 不正确，请在设置里检查一下。还有 2 个词没查"},
        {AIError(AIError::Kind::noKey), "还没有填 DeepSeek API key，请在设置里填写。还有 2 个词没查"},
        {AIError(AIError::Kind::noBalance), "DeepSeek 账户余额不足，请先充值。还有 2 个词没查"},
        {AIError::ofStatus(403, u"no"_s, {}), "DeepSeek 返回错误 403：no。还有 2 个词没查"},
    };
    for (const auto &[error, text] : cases) {
        import->add({u"run"_s, u"hop"_s});
        ai.forgetCalls();
        import->resume();
        ai.fail(error);
        EXPECT_EQ(import->state(), State::paused);
        EXPECT_EQ(import->statusText(), QString::fromUtf8(text));
        clock.advance(1h);
        EXPECT_EQ(ai.waiting(), 0);
        restart();
        import->start();
        EXPECT_EQ(ai.waiting(), 0) << "nor does a restart ask again";
    }
}

TEST_F(WordImportTest, WaitsWithoutANetworkAndGoesOnByItself)
{
    import->add({u"run"_s});
    ai.fail(TransportError(TransportError::Kind::noNetwork));
    EXPECT_EQ(import->state(), State::waiting);
    EXPECT_EQ(import->statusText(), u"网络不通，请检查网络连接。会自动再试，还有 1 个词没查"_s);
    clock.advance(59s);
    EXPECT_EQ(ai.waiting(), 0);
    clock.advance(1s);
    ai.fail(AIError::ofStatus(503, {}, {}));
    EXPECT_EQ(import->state(), State::waiting) << "a provider that is too busy is no other case";
    import->pause();
    clock.advance(1h);
    EXPECT_EQ(ai.waiting(), 0);
    import->resume();
    answer("run");
    EXPECT_EQ(import->state(), State::idle);
}

TEST_F(WordImportTest, AWordThatFailsIsToldAndThreeInARowPause)
{
    import->add({u"a1"_s, u"b2"_s, u"run"_s, u"c3"_s, u"d4"_s, u"e5"_s, u"hop"_s});
    const auto fail = [this] { ai.fail(AIError(AIError::Kind::badResponse)); };
    fail();
    fail();
    answer("run");
    fail();
    fail();
    EXPECT_EQ(import->state(), State::looking);
    fail();
    EXPECT_EQ(import->statusText(), u"AI 返回的内容看不懂，再试一次吧。还有 4 个词没查"_s)
        << "for a setting may be wrong, they get one more try";
    import->resume();
    answer("jump");
    fail();
    fail();
    answer("hop");
    EXPECT_EQ(import->statusText(), u"查完了：存了 3 个词，4 个没查到：a1、b2、d4、e5"_s);
}

TEST_F(WordImportTest, AListOfWhichNoWordIsAnsweredComesToItsEnd)
{
    import->add({u"a1"_s, u"b2"_s, u"c3"_s});
    const auto failAll = [this] {
        for (int i = 0; i < 3; ++i)
            ai.fail(AIError(AIError::Kind::badResponse));
    };
    failAll();
    EXPECT_EQ(import->statusText(), u"AI 返回的内容看不懂，再试一次吧。还有 3 个词没查"_s);
    restart();
    EXPECT_EQ(import->total(), 3);
    import->resume();
    failAll();
    EXPECT_EQ(import->state(), State::paused) << "a new process knows of no earlier try";
    import->resume();
    failAll();
    EXPECT_EQ(import->state(), State::idle);
    EXPECT_EQ(import->statusText(), u"查完了：存了 0 个词，3 个没查到：a1、b2、c3"_s);
    import->add({u"a1"_s, u"b2"_s, u"c3"_s});
    failAll();
    EXPECT_EQ(import->state(), State::paused) << "nor does a list that is given again";
}

TEST_F(WordImportTest, CancelForgetsWhatWaitsForGood)
{
    import->add({u"run"_s, u"hop"_s});
    answer("run");
    import->cancel();
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(import->statusText(), u"已取消，查好的词留在生词本里"_s);
    restart();
    import->start();
    EXPECT_EQ(import->state(), State::idle);
    EXPECT_THAT(headwords(), ElementsAre(u"run"_s));
}

TEST_F(WordImportTest, AListenerMayEndItInTheMiddle)
{
    QObject::connect(import.get(), &WordImport::wordSettled, import.get(), [this] { import->cancel(); });
    import->add({u"run"_s, u"hop"_s});
    answer("run");
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(import->state(), State::idle);
}

} // namespace nimbrelle
