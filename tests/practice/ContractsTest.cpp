#include "ai/AIError.h"
#include "ai/DeepSeekClient.h"
#include "ai/ProviderConnections.h"
#include "card/AskSession.h"
#include "coach/CoachQuestion.h"
#include "coach/CoachSession.h"
#include "coach/SampleLearner.h"
#include "practice/Server.h"
#include "support/Await.h"
#include "support/Printers.h"
#include "support/Words.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// What the program itself asks, with its own prompts, answered by the practice provider.
class Contracts : public testing::Test {
protected:
    static AppConfig configFor(const practice::Server &provider)
    {
        AppConfig config;
        config.apiKey = u"practice"_s;
        config.baseURL = u"http://127.0.0.1:%1"_s.arg(provider.port());
        return config;
    }
    Explanation explain(const QString &selection, const QString &context)
    {
        return await(client.explain(selection, context));
    }
    template <typename Session> static std::string lastWords(const Session &session)
    {
        EXPECT_TRUE(waitUntil([&] { return !session.isAnswering(); }));
        return session.error().isEmpty() ? session.messages().last().text.toStdString()
                                         : session.error().toStdString();
    }

    const practice::Lexicon lexicon;
    const practice::Server server{lexicon, {.delay = 0ms}};
    SampleLearner learner;
    ProviderConnections connections{learner.clock};
    const DeepSeekClient client{configFor(server), connections};
    const AIClientFactory newClient = [this](auto) { return std::make_unique<DeepSeekClient>(client); };
};

TEST_F(Contracts, Explain)
{
    const Explanation running = explain(u"has been\nrunning"_s,
        u"Home\nReply Share\nThe server has been running for three days\nwithout a restart. It crashed."_s);
    EXPECT_EQ(running.headword, u"run"_s);
    EXPECT_EQ(running.sentenceZh, u"服务器已经连续跑了三天没重启。"_s);
    EXPECT_EQ(running.surfaceForm, u"has been running"_s);
    EXPECT_EQ(running.formKind, u"ing"_s);
    EXPECT_THAT(running.grammarNoteZh->toStdString(), StartsWith("has been running："));
    const Explanation elsewhere =
        explain(u"ran"_s, u"Posted in 2019\nShe ran, e.g. on Monday. Then it rained."_s);
    EXPECT_EQ(elsewhere.sentence, u"She ran, e.g. on Monday."_s);
    EXPECT_EQ(elsewhere.grammar, u"past_simple"_s) << "no other form of the word is spelled so";
    EXPECT_EQ(explain(u"deprecated"_s, u"My whole life is deprecated."_s).grammar, u"none"_s);
    EXPECT_EQ(
        explain(u"crash"_s, u"It may crash, they say. Does it crash at night? I have no idea."_s).sentence,
        u"Does it crash at night?"_s)
        << "the nearest to the middle";

    EXPECT_EQ(explain(u"karma"_s, u"u/someone_ someone 703K karma Follow Chat"_s).sentenceIsExample, true);
    EXPECT_EQ(explain(u" \"frobnicate\", "_s, u"You have to frobnicate it."_s).headword, u"frobnicate"_s);
    for (const char16_t *text : {u"", u" ", u"，。", u"'''", u"🙂", u"to to to to to to", u"note: this"})
        EXPECT_FALSE(explain(QString::fromUtf16(text), QString::fromUtf16(text)).meaningZh.isEmpty());
}

TEST_F(Contracts, Lookup)
{
    const std::tuple<const char16_t *, const char16_t *, bool> cases[]{
        {u"Hotel Califonil", u"Hotel California", true}, {u"canva", u"Canva", false},
        {u"reluctnat", u"reluctant", true}, {u"  RAN ", u"run", false}, {u"tldr", u"TL;DR", false},
        {u"house", u"house", false}, {u"部署", u"deploy", false}, {u"加州旅馆", u"Hotel California", false}};
    for (const auto &[query, headword, isCorrected] : cases) {
        const LookupResult found = await(client.lookup(QString::fromUtf16(query)));
        EXPECT_EQ(found.explanation.headword, QString::fromUtf16(headword));
        EXPECT_EQ(found.corrected, isCorrected) << QString::fromUtf16(query).toStdString();
    }
    EXPECT_EQ(await(client.lookup(u"放弃"_s)).alternatives->size(), 3);
}

TEST_F(Contracts, Translate)
{
    const auto whole =
        await(client.translate(u"Run the tests before\nyou push. Wow, that was a fast reply."_s));
    EXPECT_EQ(whole.translationZh, u"推代码之前先跑一遍测试。哇，回得真快。"_s);
    const auto glossed =
        await(client.translate(u"Our maintainer was reluctant to merge it. Check the docs first."_s));
    EXPECT_THAT(glossed.translationZh.toStdString(),
        AllOf(StartsWith("（练习模式，不是完整翻译"),
            HasSubstr("reluctant〔不情愿的，勉强的〕 to merge〔合并〕 it. 先看文档。")));
    EXPECT_EQ(glossed.keyTerms->value(2).text, u"merge"_s);
}

TEST_F(Contracts, Mnemonic)
{
    WordEntry word = wordNamed(u"give up"_s);
    word.pos = u"phrase"_s;
    word.meaningZh = u"放弃"_s;
    word.examples = {exampleOf(u"I was reluctant to give up."_s)};
    EXPECT_THAT(await(client.mnemonic(word, {u"run"_s}, {})).toStdString(), HasSubstr("give（给）+ up"));
    word.headword = u"zxqy"_s;
    EXPECT_THAT(await(client.mnemonic(word, {u"run"_s}, {})).toStdString(), StartsWith("画面："));
}

TEST_F(Contracts, Ask)
{
    AskSession session(learner.clock, learner.config, learner.words, newClient);
    const std::pair<QuickQuestion, const char *> expected[]{{QuickQuestion::why, "to post：to + 动词原形"},
        {QuickQuestion::structure, "**reluctant**："},
        {QuickQuestion::simpler, "to put a message on a website"},
        {QuickQuestion::examples, "  我本来不太想发"}};
    for (const auto &[question, words] : expected) {
        session.start({.original = u"I was reluctant to post this, but here we go."_s,
                          .translation = u"不过还是来吧。"_s,
                          .focusWord = u"post"_s},
            question);
        EXPECT_THAT(lastWords(session), AllOf(HasSubstr("**post**"), HasSubstr(words), HasSubstr("不是 AI")));
    }
    session.setInput(u"今天天气怎么样"_s);
    session.send();
    EXPECT_THAT(lastWords(session), AllOf(HasSubstr("答不上来"), HasSubstr("**post**")));
    const QList<ChatMessage> bare{{u"user"_s, u"用一句中文解释 ngl 是什么意思，不超过 20 字。"_s}};
    EXPECT_LE(RunningStream(client.streamChat(bare, 0.5)).result().join(QString()).size(), 20);
}

TEST_F(Contracts, Coach)
{
    learner.clock.set(learner.now);
    const auto facts = [this](Timestamp now) { return learner.facts.build(now); };
    CoachHistory history(learner.paths, learner.clock);
    CoachSession session(history, learner.clock, learner.config, facts, newClient);
    session.open();
    EXPECT_THAT(lastWords(session),
        AllOf(HasSubstr("最近存下了 **reluctant**（不情愿的，勉强的），来自 reddit.com「A thread」。"),
            HasSubstr("**reluctant**（不情愿的，勉强的）、**ngl**"),
            HasSubstr("**build**、**reluctant** 最近两次你都想起来了"),
            HasSubstr("有点黏的是 **reluctant**（不情愿的，勉强的），最近两周忘过不止一次"),
            HasSubstr("这一轮有 4 题"), HasSubstr("不是 AI"), Not(HasSubstr("decision"))));
    const std::pair<CoachQuestion, const char *> expected[]{
        {CoachQuestion::afterReview, "\n- **deprecate**：没想起来 → 变成难啃的词 → 先休息"},
        {CoachQuestion::focus, "\n- **Claude**（AI 助手；也是人名）："},
        {CoachQuestion::weakest, "反复没想起来的是"}, {CoachQuestion::trick, "画面：周一早上"}};
    for (const auto &[question, words] : expected) {
        session.send(prompt(question, learner.facts.todayReview(learner.now)));
        EXPECT_THAT(lastWords(session), AllOf(HasSubstr("**reluctant**"), HasSubstr(words)));
    }
}

TEST_F(Contracts, AnUnknownOneIsRefused)
{
    try {
        await(client.chatJSON<MnemonicTip>(u"Reply with a json object: {\"other_zh\": \"...\"}"_s, u"x"_s));
        FAIL() << "it was answered";
    } catch (const AIError &error) {
        EXPECT_EQ(error.status(), 400);
    }
}

} // namespace
