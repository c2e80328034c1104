#include "ai/Conversation.h"

#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Sends only the question, and takes back one that failed.
struct PlainConversation final : Conversation {
    PlainConversation(const ConfigStore &config, AIClientFactory newClient)
        : Conversation(config, std::move(newClient), 0.3, nullptr)
    {
    }
    using Conversation::setMessages;

    QList<ChatMessage> exchangeFor(const QString &question) const override
    {
        return {ChatMessage::user(question)};
    }
    void questionFailed() override { failed.append(takeLastMessage().text); }
    void answerEnded() override { ++ended; }

    QStringList failed;
    int ended = 0;
};

class ConversationTest : public testing::Test, protected Notebook {
protected:
    void ask(const QString &question)
    {
        talk->setInput(question);
        talk->send();
    }
    /// With > before what the user said.
    QStringList texts() const
    {
        QStringList result;
        for (const Conversation::Message &message : talk->messages())
            result.append(message.isUser ? u'>' + message.text : message.text);
        return result;
    }

    FakeAI ai;
    std::unique_ptr<PlainConversation> talk = std::make_unique<PlainConversation>(config, ai.factory());
};

} // namespace

TEST_F(ConversationTest, AnAnswerGrowsPieceByPiece)
{
    QList<qsizetype> grown;
    QObject::connect(talk.get(), &Conversation::messageGrew, [&](qsizetype index) { grown.append(index); });
    configure([](AppConfig &changed) { changed.model = u"my-model"_s; });
    ask(u" 问 \n"_s);
    EXPECT_EQ(ai.calls().first().messages, QList{ChatMessage::user(u"问"_s)});
    EXPECT_EQ(ai.calls().first().temperature, 0.3);
    EXPECT_EQ(ai.calls().first().config.model, u"my-model"_s);
    EXPECT_EQ(talk->input(), QString());
    EXPECT_THAT(texts(), ElementsAre(u">问"_s, QString()));
    ai.piece(u"一"_s);
    ai.piece(u"二"_s);
    EXPECT_THAT(texts(), ElementsAre(u">问"_s, u"一二"_s));
    EXPECT_THAT(grown, ElementsAre(1, 1));
    EXPECT_TRUE(talk->isStreaming(talk->messages()[1]));
    EXPECT_FALSE(talk->isStreaming(talk->messages()[0]));
    EXPECT_EQ(talk->ended, 0);
    ai.endStream();
    EXPECT_FALSE(talk->isAnswering());
    EXPECT_FALSE(talk->isStreaming(talk->messages()[1]));
    EXPECT_EQ(talk->ended, 1);
}

TEST_F(ConversationTest, SendsNothingBlankAndNothingWhileAnAnswerComes)
{
    ask(u" \n "_s);
    EXPECT_THAT(ai.calls(), IsEmpty());
    ask(u"一"_s);
    ask(u"二"_s);
    talk->send(u"三"_s);
    EXPECT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(talk->input(), u"二"_s) << "what was typed stays";
    EXPECT_THAT(texts(), ElementsAre(u">一"_s, QString()));
}

TEST_F(ConversationTest, AFailureBeforeTheFirstPieceLeavesNoEmptyAnswer)
{
    talk->setInput(u"草稿"_s);
    talk->send(u"全文"_s, u"标签"_s);
    EXPECT_EQ(talk->messages().first().shownText(), u"标签"_s);
    ai.fail(std::runtime_error("no memory"));
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_THAT(talk->failed, ElementsAre(u"全文"_s));
    EXPECT_EQ(talk->input(), u"草稿"_s);
    EXPECT_EQ(talk->error(), u"no memory"_s);
    EXPECT_FALSE(talk->isAnswering());
    EXPECT_EQ(talk->ended, 1);

    ask(u"再问"_s);
    EXPECT_EQ(talk->error(), QString());
    ai.piece(u"一半"_s);
    ai.fail(std::runtime_error("lost"));
    EXPECT_THAT(texts(), ElementsAre(u">再问"_s, u"一半"_s)) << "what has come stays";
    EXPECT_EQ(talk->failed.size(), 1);
    EXPECT_EQ(talk->error(), u"lost"_s);
}

TEST_F(ConversationTest, AnAnswerWithoutAPieceIsOneThatCannotBeRead)
{
    ask(u"问"_s);
    ai.endStream();
    EXPECT_THAT(texts(), IsEmpty());
    EXPECT_THAT(talk->failed, ElementsAre(u"问"_s));
    EXPECT_EQ(talk->error(), u"AI 返回的内容看不懂，再试一次吧。"_s);
    EXPECT_FALSE(talk->isAnswering());
}

TEST_F(ConversationTest, AStopKeepsWhatHasCome)
{
    ask(u"一"_s);
    ai.piece(u"一半"_s);
    talk->stop();
    talk->stop();
    EXPECT_EQ(ai.waiting(), 0) << "the exchange is over";
    EXPECT_FALSE(talk->isAnswering());
    EXPECT_EQ(talk->error(), QString());
    ask(u"二"_s);
    talk->stop();
    EXPECT_THAT(texts(), ElementsAre(u">一"_s, u"一半"_s, u">二"_s, QString()));
    EXPECT_EQ(talk->ended, 2);
}

TEST_F(ConversationTest, NoPieceOfAnAnswerLandsAmongOtherMessages)
{
    ask(u"旧"_s);
    talk->setMessages({});
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_FALSE(talk->isAnswering());
    ask(u"新"_s);
    ai.piece(u"答"_s);
    EXPECT_THAT(texts(), ElementsAre(u">新"_s, u"答"_s));
}

TEST_F(ConversationTest, MayBeStoppedOrDeletedByWhoeverFollowsIt)
{
    const auto stopping = QObject::connect(talk.get(), &Conversation::messageGrew, [this] { talk->stop(); });
    ask(u"一"_s);
    ai.piece(u"半"_s);
    EXPECT_THAT(texts(), ElementsAre(u">一"_s, u"半"_s));
    QObject::disconnect(stopping);

    QObject::connect(talk.get(), &Conversation::messageGrew, [this] { talk.reset(); });
    ask(u"二"_s);
    ai.piece(u"半"_s);
    EXPECT_EQ(talk, nullptr);
    EXPECT_EQ(ai.waiting(), 0);
}

} // namespace nimbrelle
