#include "WaylandScene.h"

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const QString reading = u"I was reluctant to post this, but here we go.\n"
                        "The old call is deprecated, so half of the client had to be rewritten.\n"
                        "Nobody wanted to maintain it any longer.\n"_s;

class WaylandRoad : public WaylandScene {
protected:
    void read(const AppConfig &config)
    {
        writeConfig(config);
        startProgram();
        openEditor(reading);
    }
    void read() { read(practiceConfig()); }

    void mark(const QString &word) { doubleClick(inEditor(word).center()); }

    void translateRegion()
    {
        Running command;
        command.start(QStringLiteral(NIMBRELLE_PROGRAM), {u"--translate-region"_s},
            {{u"NIMBRELLE_DATA_DIR"_s, folder.path()}});
        EXPECT_EQ(command.exitCode(), 0);
    }
};

TEST_F(WaylandRoad, AMarkedWordBringsItsCardBesideItAndTypingGoesOn)
{
    read();
    const QPoint word = inEditor(u"reluctant"_s).center();
    mark(u"reluctant"_s);
    ASSERT_TRUE(appears(u"保存"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"reluctant"_s);
    EXPECT_EQ(textOf(u"原句"_s), u"I was reluctant to post this, but here we go."_s);
    const QRect card = find(u"Nimbrelle"_s)->area;
    const int shadow = 18; // around the card, within its window
    EXPECT_EQ(card.topLeft(), word + QPoint(-24 - shadow, 18 - shadow));
    shoot(u"card"_s);
    press(u"更多"_s);
    EXPECT_TRUE(appears(u"收起"_s));
    press(u"保存"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return notebook().size() == 1; }, 3000));
    EXPECT_EQ(
        notebook().first().examples.value(0).sentence, u"I was reluctant to post this, but here we go."_s);
    EXPECT_EQ(notebook().first().examples.value(0).sourceApp, u"Mousepad"_s);
    type(u"eager"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return editorText().startsWith(u"I was eager to post"_s); }, 3000))
        << editorText().toStdString();
}

TEST_F(WaylandRoad, ADragOffersATranslationThatGoesOnceThePointerLeftIt)
{
    read();
    hand().drag(inEditor(u"The old"_s).topLeft() + QPoint(1, 8),
        inEditor(u"rewritten."_s).bottomRight() - QPoint(1, 8));
    ASSERT_TRUE(appears(u"翻译选中的文字"_s));
    press(u"翻译选中的文字"_s);
    ASSERT_TRUE(appears(u"译文"_s));
    shoot(u"translation"_s);
    hand().moveTo(restingArea(u"译文"_s).center());
    QTest::qWait(900);
    EXPECT_TRUE(find(u"译文"_s)) << "the pointer is on it";
    hand().moveTo({1200, 700});
    EXPECT_TRUE(disappears(u"译文"_s, 1500)) << "the pointer has left it";
}

TEST_F(WaylandRoad, MarkingByKeyboardBringsOneCardWhenTheKeysRest)
{
    read();
    click(inEditor(u"deprecated"_s).topLeft() + QPoint(1, 8));
    hand().key(keysym::shift, true);
    for (int i = 0; i < 10; ++i) {
        hand().tap(keysym::right);
        QTest::qWait(30);
        EXPECT_FALSE(find(u"意思"_s)) << "after " << i + 1 << " letters";
    }
    hand().key(keysym::shift, false);
    ASSERT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"deprecate"_s);
}

TEST_F(WaylandRoad, AnExcludedProgramIsLeftAlone)
{
    AppConfig config = practiceConfig();
    config.excludedBundleIDs.append(u"Mousepad"_s);
    read(config);
    mark(u"reluctant"_s);
    EXPECT_FALSE(appears(u"意思"_s, 1500));
}

TEST_F(WaylandRoad, AFrameIsReadAndTranslatedAndEscLeavesIt)
{
    read();
    const QRect line = inEditor(u"Nobody wanted to maintain it any longer."_s);
    translateRegion();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown().isEmpty(); }, 3000));
    QTest::qWait(300);
    hand().tap(keysym::escape);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown().isEmpty(); }, 3000));
    translateRegion();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !shown().isEmpty(); }, 3000));
    QTest::qWait(300);
    hand().moveTo(line.center()); // the first press in a new X window is told at the place of the last motion
    QTest::qWait(50);
    hand().drag(line.topLeft() - QPoint(6, 6), line.bottomRight() + QPoint(6, 6));
    ASSERT_TRUE(appears(u"译文"_s)) << program.process().readAll().toStdString();
    EXPECT_TRUE(says(u"Nobody wanted to maintain it any longer."_s));
    shoot(u"frame"_s);
}

} // namespace
