#include "card/AskSession.h"

#include "ai/TransportError.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>
#include <stdexcept>

namespace nimbrelle {

using testing::ElementsAre;
using testing::IsEmpty;

class AskSessionTest : public testing::Test {
protected:
    AskSessionTest() { session.start(wordContext(), std::nullopt); }

    static AskContext wordContext()
    {
        return {QStringLiteral("He ran."), QStringLiteral("他跑了。"), QStringLiteral("run"),
            Notebook::explained("run", "He ran."), Notebook::page("https://example.org/a")};
    }
    static AskContext textContext()
    {
        return {.original = QStringLiteral("A text."), .translation = QStringLiteral("一段文字。")};
    }

    void say(const char *text)
    {
        session.setInput(QString::fromUtf8(text));
        session.sendInput();
    }
    void answer(const char *text)
    {
        ai.piece(QString::fromUtf8(text));
        ai.endStream();
    }
    QStringList texts() const
    {
        QStringList result;
        for (const AskSession::Message &message : session.messages())
            result.append((message.isUser ? u'>' : u'<') + message.text);
        return result;
    }
    QUuid lastId() const { return session.messages().last().id; }

    Notebook notebook;
    FakeAI ai;
    AskSession session{notebook.clock, notebook.config, notebook.store, ai.factory()};
};

TEST_F(AskSessionTest, SendsThePromptAndShowsTheLabel)
{
    session.start(wordContext(), QuickQuestion::why);
    ASSERT_EQ(ai.calls().size(), 1);
    const auto &call = ai.calls().first();
    EXPECT_EQ(call.temperature, 0.5);
    ASSERT_EQ(call.messages.size(), 3);
    EXPECT_EQ(call.messages[0].role, QStringLiteral("system"));
    EXPECT_TRUE(call.messages[0].content.startsWith(QStringLiteral("你是一位耐心的英语老师。")));
    EXPECT_EQ(call.messages[0].content.count(u'\n'), 5);
    EXPECT_EQ(call.messages[1].content,
        QStringLiteral(
            "我在看这段英文：\nHe ran.\n\n中文翻译：他跑了。\n\n我想重点了解的词：run\n\n下面是我的问题。"));
    EXPECT_EQ(call.messages[2],
        (ChatMessage{QStringLiteral("user"),
            QStringLiteral("为什么这里用「run」？这样说是什么意思、什么语气？换成别的说法会有什么不同？")}));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral(">为什么这么用？"), QStringLiteral("<")));
    EXPECT_TRUE(session.isAnswering());

    answer("因为");
    say(" 那 will 呢 \n");
    const QList<ChatMessage> exchange = ai.calls().last().messages; // history holds the short label
    ASSERT_EQ(exchange.size(), 5);
    EXPECT_EQ(exchange[2], (ChatMessage{QStringLiteral("user"), QStringLiteral("为什么这么用？")}));
    EXPECT_EQ(exchange[3], (ChatMessage{QStringLiteral("assistant"), QStringLiteral("因为")}));
    EXPECT_EQ(exchange[4], (ChatMessage{QStringLiteral("user"), QStringLiteral("那 will 呢")}));
    EXPECT_EQ(session.input(), QString());
}

TEST_F(AskSessionTest, AQuestionOnATextSpeaksOfItsWords)
{
    EXPECT_EQ(prompt(QuickQuestion::examples, textContext()),
        QStringLiteral("用这句话里值得注意的词和搭配再造 3 个日常能用到的例句，每句附中文。"));
    EXPECT_EQ((AskContext{.original = QStringLiteral("A"), .translation = QString()}.contextText()),
        QStringLiteral("我在看这段英文：\nA\n\n下面是我的问题。"));
    EXPECT_EQ(session.saveLabel(), QStringLiteral("存到「run」"));
    session.start(textContext(), std::nullopt);
    EXPECT_EQ(session.saveLabel(), QStringLiteral("存为句子笔记"));
}

TEST_F(AskSessionTest, SendsNothingBlankAndNothingWhileAnAnswerStreams)
{
    say(" \n ");
    EXPECT_FALSE(session.canSend());
    say("one");
    say("two");
    session.sendQuestion(QuickQuestion::why);
    EXPECT_EQ(ai.calls().size(), 1);
    EXPECT_EQ(session.input(), QStringLiteral("two")); // and what was typed stays
    EXPECT_EQ(texts().size(), 2);
}

TEST_F(AskSessionTest, TheAnswerGrowsPieceByPiece)
{
    QList<qsizetype> grown;
    QObject::connect(&session, &AskSession::messageGrew, [&](qsizetype index) { grown.append(index); });
    say("q");
    ai.piece(QStringLiteral("一"));
    ai.piece(QStringLiteral("二"));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral(">q"), QStringLiteral("<一二")));
    EXPECT_THAT(grown, ElementsAre(1, 1));
    EXPECT_TRUE(session.isStreaming(session.messages()[1]));
    EXPECT_FALSE(session.isStreaming(session.messages()[0]));
    ai.endStream();
    EXPECT_FALSE(session.isAnswering());
    EXPECT_FALSE(session.isStreaming(session.messages()[1]));
}

TEST_F(AskSessionTest, NoPieceOfAnOldConversationLandsInANewOne)
{
    say("old");
    ai.piece(QStringLiteral("alt"));
    session.setInput(QStringLiteral("half typed"));
    session.start(textContext(), QuickQuestion::structure);
    EXPECT_EQ(ai.waiting(), 1); // the old stream is closed
    ai.piece(QStringLiteral("neu"));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral(">拆解句子结构"), QStringLiteral("<neu")));
    EXPECT_EQ(session.input(), QString());
    EXPECT_EQ(session.error(), QString());
    EXPECT_TRUE(session.isAnswering());
}

TEST_F(AskSessionTest, AFailureBeforeTheFirstPieceTakesTheQuestionAway)
{
    say("first");
    answer("a");
    say("second");
    ai.fail(TransportError(TransportError::Kind::refused));
    EXPECT_THAT(texts(), ElementsAre(QStringLiteral(">first"), QStringLiteral("<a")));
    EXPECT_EQ(session.error(), TransportError(TransportError::Kind::refused).text());
    EXPECT_FALSE(session.isAnswering());

    say("third");
    EXPECT_EQ(session.error(), QString());
    ai.piece(QStringLiteral("half"));
    ai.fail(TransportError(TransportError::Kind::lost));
    EXPECT_EQ(texts().last(), QStringLiteral("<half")); // what has come stays
    EXPECT_FALSE(session.error().isEmpty());
}

TEST_F(AskSessionTest, AStopKeepsWhatHasCome)
{
    say("q");
    ai.piece(QStringLiteral("half"));
    session.stop();
    EXPECT_EQ(ai.waiting(), 0);
    EXPECT_EQ(texts().last(), QStringLiteral("<half"));
    EXPECT_FALSE(session.isAnswering());
    EXPECT_EQ(session.error(), QString());
    say("next");
    session.stop(); // before the first piece: the waiting row stays
    EXPECT_THAT(texts(),
        ElementsAre(
            QStringLiteral(">q"), QStringLiteral("<half"), QStringLiteral(">next"), QStringLiteral("<")));
}

TEST_F(AskSessionTest, AnAnswerIsKeptWithItsWordWhichIsSavedFirst)
{
    say("q");
    answer("a");
    session.save(session.messages().first().id); // a question is nothing to keep
    session.save(QUuid::createUuid());
    EXPECT_THAT(session.savedIDs(), IsEmpty());
    session.save(lastId());
    EXPECT_TRUE(session.savedIDs().contains(lastId()));
    const WordEntry &word = notebook.word("run");
    EXPECT_EQ(word.examples.first().sourceURL, QStringLiteral("https://example.org/a"));
    ASSERT_EQ(word.notes->size(), 1);
    AINote expected{.id = word.notes->first().id,
        .question = QStringLiteral("q"),
        .answer = QStringLiteral("a"),
        .original = QStringLiteral("He ran."),
        .translation = QStringLiteral("他跑了。"),
        .sourceApp = QStringLiteral("Firefox"),
        .sourceURL = QStringLiteral("https://example.org/a"),
        .sourceTitle = QStringLiteral("A page"),
        .addedAt = notebook.clock.now()};
    EXPECT_EQ(word.notes->first(), expected);
    EXPECT_THAT(notebook.store.sentenceNotes(), IsEmpty());
}

TEST_F(AskSessionTest, WithoutAWordToKeepItWithItIsASentenceNote)
{
    AskContext lost = wordContext(); // the notebook has lost the word, and nothing explains it
    lost.explanation.reset();
    for (const AskContext &context : {textContext(), lost}) {
        session.start(context, QuickQuestion::simpler);
        answer("a");
        session.save(lastId());
        EXPECT_EQ(notebook.store.sentenceNotes().first().question, QStringLiteral("换个简单说法"));
        EXPECT_EQ(notebook.store.sentenceNotes().first().original, context.original);
    }
    EXPECT_EQ(notebook.store.sentenceNotes().size(), 2);
    EXPECT_THAT(notebook.store.entries(), IsEmpty());
}

TEST_F(AskSessionTest, AnAnswerEndsWhateverTheFailure)
{
    say("why");
    ai.fail(std::runtime_error("no memory"));
    EXPECT_FALSE(session.isAnswering());
    EXPECT_EQ(session.error(), QStringLiteral("no memory"));
}

} // namespace nimbrelle
