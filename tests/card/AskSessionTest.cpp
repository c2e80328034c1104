#include "card/AskSession.h"

#include "ai/AIError.h"
#include "support/FakeAIClient.h"
#include "support/Notebook.h"
#include "support/Printers.h"

#include <gmock/gmock.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;
using testing::IsEmpty;

class AskSessionTest : public testing::Test {
protected:
    AskSessionTest() { session.start(wordContext(), std::nullopt); }

    static AskContext wordContext()
    {
        return {.original = u"He ran."_s,
            .translation = u"他跑了。"_s,
            .focusWord = u"run"_s,
            .explanation = Notebook::explained("run", "He ran."),
            .source = Notebook::page("https://example.org/a")};
    }
    static AskContext textContext() { return {.original = u"A text."_s, .translation = u"一段文字。"_s}; }

    void answer(const QString &text)
    {
        ai.piece(text);
        ai.endStream();
    }
    QUuid lastId() const { return session.messages().last().id; }

    Notebook notebook;
    FakeAI ai;
    AskSession session{notebook.clock, notebook.config, notebook.store, ai.factory()};
};

TEST_F(AskSessionTest, SendsThePromptAndShowsTheLabel)
{
    session.start(wordContext(), QuickQuestion::why);
    answer(u"因为"_s);
    session.send(u"那 will 呢"_s);
    const QList<ChatMessage> exchange = ai.calls().last().messages;
    const QList<ChatMessage> expected{exchange.first(),
        ChatMessage::user(
            u"我在看这段英文：\nHe ran.\n\n中文翻译：他跑了。\n\n我想重点了解的词：run\n\n下面是我的问题。"_s),
        ChatMessage::user(u"为什么这么用？"_s), ChatMessage::assistant(u"因为"_s),
        ChatMessage::user(u"那 will 呢"_s)};
    EXPECT_EQ(exchange, expected);
    EXPECT_EQ(exchange.first().role, u"system"_s);
    EXPECT_TRUE(exchange.first().content.startsWith(u"你是一位耐心的英语老师。"_s));
    EXPECT_EQ(exchange.first().content.count(u'\n'), 5);
    EXPECT_EQ(ai.calls().first().temperature, 0.5);
    EXPECT_EQ(ai.calls().first().messages.last(),
        ChatMessage::user(u"为什么这里用「run」？这样说是什么意思、什么语气？换成别的说法会有什么不同？"_s));
}

TEST_F(AskSessionTest, AQuestionOnATextSpeaksOfItsWords)
{
    EXPECT_EQ(prompt(QuickQuestion::examples, textContext()),
        u"用这句话里值得注意的词和搭配再造 3 个日常能用到的例句，每句附中文。"_s);
    EXPECT_EQ((AskContext{.original = u"A"_s, .translation = QString()}.contextText()),
        u"我在看这段英文：\nA\n\n下面是我的问题。"_s);
    session.start(textContext(), std::nullopt);
    EXPECT_EQ(session.saveLabel(), u"存为句子笔记"_s);
}

TEST_F(AskSessionTest, EachStartIsANewConversation)
{
    session.send(u"old"_s);
    answer(u"alt"_s);
    session.save(lastId());
    session.setInput(u"half typed"_s);
    session.send(u"failing"_s);
    ai.fail(AIError(AIError::Kind::noKey));
    EXPECT_EQ(session.messages().size(), 2) << "a question that failed goes with its empty answer";

    session.start(textContext(), std::nullopt);
    EXPECT_THAT(session.messages(), IsEmpty());
    EXPECT_THAT(session.savedIDs(), IsEmpty());
    EXPECT_EQ(session.input(), QString());
    EXPECT_EQ(session.error(), QString());
}

TEST_F(AskSessionTest, AnAnswerIsKeptWithItsWordWhichIsSavedFirst)
{
    session.send(u"q"_s);
    answer(u"a"_s);
    session.save(session.messages().first().id); // a question is nothing to keep
    session.save(QUuid::createUuid());
    EXPECT_THAT(session.savedIDs(), IsEmpty());
    session.save(lastId());
    EXPECT_TRUE(session.savedIDs().contains(lastId()));
    const WordEntry &word = notebook.word("run");
    EXPECT_EQ(word.examples.first().sourceURL, u"https://example.org/a"_s);
    ASSERT_EQ(word.notes->size(), 1);
    const AINote expected{.id = word.notes->first().id,
        .question = u"q"_s,
        .answer = u"a"_s,
        .original = u"He ran."_s,
        .translation = u"他跑了。"_s,
        .sourceApp = u"Firefox"_s,
        .sourceURL = u"https://example.org/a"_s,
        .sourceTitle = u"A page"_s,
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
        answer(u"a"_s);
        session.save(lastId());
        EXPECT_EQ(notebook.store.sentenceNotes().first().question, u"换个简单说法"_s);
        EXPECT_EQ(notebook.store.sentenceNotes().first().original, context.original);
    }
    EXPECT_EQ(notebook.store.sentenceNotes().size(), 2);
    EXPECT_THAT(notebook.store.entries(), IsEmpty());
}

} // namespace nimbrelle
