#include "coach/CoachSession.h"

#include "ai/AIError.h"
#include "coach/CoachPrompts.h"
#include "frame/RecordFile.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class CoachSessionTest : public testing::Test, protected Notebook {
protected:
    CoachSessionTest() { restart(); }

    void restart()
    {
        history = std::make_unique<CoachHistory>(paths, clock);
        session = std::make_unique<CoachSession>(
            *history, clock, config,
            [this](Timestamp now) {
                EXPECT_EQ(now, clock.now());
                return u"记录 "_s + QString::number(++records);
            },
            ai.factory());
    }
    /// A whole briefing of that text, as the first opening of a day brings it.
    void brief(const QString &text = u"简报"_s)
    {
        session->open();
        ai.piece(text);
        ai.endStream();
    }

    /// What was said, with > before what the learner said.
    QStringList texts() const
    {
        QStringList result;
        for (const Conversation::Message &message : session->messages())
            result.append(message.isUser ? u'>' + message.text : message.text);
        return result;
    }
    QStringList onDisk() const
    {
        QStringList result;
        const auto days = readRecordFile<QList<CoachDay>>(paths.coach).value_or(QList<CoachDay>());
        for (const CoachMessage &message : days.isEmpty() ? QList<CoachMessage>() : days.last().messages)
            result.append(message.fromCoach ? message.text : u'>' + message.text);
        return result;
    }

    FakeAI ai;
    int records = 0;
    std::unique_ptr<CoachHistory> history;
    std::unique_ptr<CoachSession> session;
};

TEST_F(CoachSessionTest, BriefsAtTheFirstOpeningOfADay)
{
    session->open();
    ASSERT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(ai.calls().first().temperature, 0.7);
    EXPECT_EQ(ai.calls().first().messages,
        (QList{ChatMessage::system(prompts::coach()),
            ChatMessage::user(u"这是学习记录：\n记录 1"_s + prompts::briefingTask())}));
    session->open();
    ai.piece(u"早"_s);
    EXPECT_THAT(onDisk(), IsEmpty());
    ai.endStream();
    EXPECT_THAT(onDisk(), ElementsAre(u"早"_s));

    session->open();
    restart();
    session->open();
    EXPECT_THAT(texts(), ElementsAre(u"早"_s));
    EXPECT_EQ(ai.calls().size(), 1) << "the same day asks once";
    session->writeBriefing();
    EXPECT_THAT(texts(), ElementsAre(QString()));
    EXPECT_EQ(ai.calls().size(), 2);
}

TEST_F(CoachSessionTest, SendsTheRecordAndAllThatWasSaid)
{
    brief();
    session->send(u"长长的问题"_s, u"短"_s);
    session->open();
    ai.piece(u"回答"_s);
    session->stop();
    EXPECT_THAT(onDisk(), ElementsAre(u"简报"_s, u">长长的问题"_s, u"回答"_s));
    session->send(u"没有回答的"_s);
    session->stop();
    session->send(u"为什么？"_s);
    EXPECT_EQ(ai.calls().last().messages,
        (QList{ChatMessage::system(prompts::coach()),
            ChatMessage::user(u"这是我现在的学习记录：\n记录 4\n\n先写今天的简报。"_s),
            ChatMessage::assistant(u"简报"_s), ChatMessage::user(u"长长的问题"_s),
            ChatMessage::assistant(u"回答"_s), ChatMessage::user(u"没有回答的"_s),
            ChatMessage::user(u"为什么？\n（像教练聊天一样回答，一般 150～300 字，具体到我的词。）"_s)}));
    restart();
    session->open();
    EXPECT_EQ(session->messages()[1].shown, u"短"_s);
    EXPECT_EQ(session->history().size(), 1);
}

TEST_F(CoachSessionTest, GivesATypedQuestionBackWhenItFailsAndKeepsAReadyMadeOne)
{
    brief();
    session->setInput(u"问题"_s);
    session->send();
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_THAT(texts(), ElementsAre(u"简报"_s));
    EXPECT_EQ(session->input(), u"问题"_s);
    session->send();
    session->setInput(u"下一句"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(session->input(), u"问题\n下一句"_s) << "what was typed meanwhile stays too";

    session->send(u"全文"_s, u"标签"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_THAT(onDisk(), ElementsAre(u"简报"_s, u">全文"_s));
    EXPECT_EQ(session->input(), u"问题\n下一句"_s);
    EXPECT_EQ(session->error(), AIError(AIError::Kind::noBalance).text());
    session->open();
    EXPECT_EQ(session->error(), QString());
}

TEST_F(CoachSessionTest, AFailedBriefingLeavesAnEmptyScreenToTryAgain)
{
    session->open();
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_FALSE(session->error().isEmpty());
    brief();
    EXPECT_EQ(session->error(), QString());
    EXPECT_THAT(onDisk(), ElementsAre(u"简报"_s));
}

TEST_F(CoachSessionTest, ARewrittenBriefingReplacesTheConversationOnlyWhenSomethingOfItComes)
{
    brief();
    session->send(u"问题"_s);
    ai.piece(u"回答"_s);
    ai.endStream();
    const auto before = session->messages();
    const auto stored = readFile(paths.coach);
    const std::function<void()> endings[]{[this] { ai.fail(AIError(AIError::Kind::noBalance)); },
        [this] { session->stop(); },
        [this] {
            restart();
            session->open();
        }};
    for (const auto &end : endings) {
        session->writeBriefing();
        EXPECT_THAT(texts(), ElementsAre(QString()));
        session->writeBriefing();
        end();
        EXPECT_EQ(session->messages(), before);
        EXPECT_EQ(readFile(paths.coach), stored);
    }
    session->writeBriefing();
    clock.advance(24h);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_EQ(session->messages(), before);
    EXPECT_EQ(readFile(paths.coach), stored) << "it is not today's";
    clock.advance(-24h);
    session->writeBriefing();
    ai.piece(u"新"_s);
    ai.fail(AIError(AIError::Kind::noBalance));
    EXPECT_THAT(onDisk(), ElementsAre(u"新"_s));
}

TEST_F(CoachSessionTest, StoppedBeforeItsFirstWordItLeavesNoEmptyMessage)
{
    session->open();
    EXPECT_FALSE(session->isBriefingMissing());
    session->stop();
    EXPECT_TRUE(session->isBriefingMissing());
    brief();
    session->send(u"问题"_s);
    session->stop();
    EXPECT_THAT(texts(), ElementsAre(u"简报"_s, u">问题"_s));
    EXPECT_FALSE(session->isBriefingMissing());
    clock.advance(24h);
    session->open();
    session->stop();
    EXPECT_THAT(texts(), IsEmpty()) << "yesterday's conversation stays with its day";
}

TEST_F(CoachSessionTest, NoticesANewDayWhenOpened)
{
    brief(u"长"_s.repeated(901));
    session->send(u"问题"_s);
    clock.advance(24h);
    session->open();
    EXPECT_EQ(ai.calls().size(), 2) << "an answer that is coming is not cut off";
    ai.piece(u"回答"_s);
    ai.endStream();
    EXPECT_EQ(session->messages().size(), 3) << "the screen stays until the next opening";
    ASSERT_EQ(session->history().size(), 2);
    EXPECT_EQ(session->history().last().day, u"2026-03-02"_s);
    EXPECT_EQ(session->history().last().messages.size(), 3) << "and is saved under the new day";

    clock.advance(24h);
    session->open();
    EXPECT_THAT(texts(), ElementsAre(QString()));
    const QString asked = ai.calls().last().messages.last().content;
    EXPECT_TRUE(asked.startsWith(u"这是学习记录：\n记录 3\n\n你上次（2026-03-02）写的简报：\n长"_s));
    EXPECT_EQ(asked.count(u'长'), 900 + prompts::briefingTask().count(u'长'));
    EXPECT_TRUE(asked.endsWith(u"长"_s + prompts::briefingTask()));
}

TEST_F(CoachSessionTest, KeepsTwentyNineDays)
{
    for (int day = 0; day < 30; ++day) {
        brief(QString::number(day));
        clock.advance(24h);
    }
    restart();
    ASSERT_EQ(session->history().size(), 29);
    EXPECT_EQ(session->history().first().day, u"2026-03-02"_s);
    EXPECT_EQ(session->history().last().messages.first().text, u"29"_s);
}

TEST_F(CoachSessionTest, TakesABrokenHistoryAsNone)
{
    replaceFile(paths.coach, R"([{"day":"2026-03-01","messages":[{"id":"x"}]}])");
    restart();
    EXPECT_THAT(session->history(), IsEmpty());
    brief();
    EXPECT_FALSE(readFile(paths.coach)->contains("shown")) << "what is absent is left out";
}

TEST_F(CoachSessionTest, QuotesTheLatestDayOnWhichTheCoachSpoke)
{
    const auto message = [](bool fromCoach, const QString &text) {
        return CoachMessage{.id = QUuid::createUuid(), .fromCoach = fromCoach, .text = text};
    };
    const auto quoted = [this](const QList<CoachDay> &days) {
        writeRecordFile(paths.coach, days);
        const auto briefing = CoachHistory(paths, clock).briefingBefore(u"2026-03-04"_s);
        return briefing ? briefing->day + briefing->text : u"none"_s;
    };
    const CoachDay first{.day = u"2026-03-01"_s,
        .messages = {message(false, u"问"_s), message(true, u"甲"_s), message(true, u"乙"_s)}};
    const CoachDay silent{.day = u"2026-03-02"_s, .messages = {message(false, u"问"_s)}};
    const CoachDay empty{.day = u"2026-03-03"_s, .messages = {message(true, {}), message(true, u"丙"_s)}};
    const CoachDay today{.day = u"2026-03-04"_s, .messages = {message(true, u"今天"_s)}};
    EXPECT_EQ(quoted({first, silent, today}), u"2026-03-01甲"_s);
    EXPECT_EQ(quoted({first, empty}), u"none"_s) << "no older day stands in for it";
}

} // namespace
