#include "XScene.h"

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

const QStringList page{
    u"I was reluctant to post this, but here we go."_s, u"The old call is deprecated and will be removed."_s};

class Pointing : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        startProgram();
    }
};

TEST_F(Pointing, AWordInAPictureIsReadByResting)
{
    const QRect word = showPicture(page, u"deprecated"_s);
    rest(word.center());
    ASSERT_TRUE(appears(u"意思"_s, 8000));
    EXPECT_EQ(textOf(u"单词"_s), u"deprecate"_s);
    EXPECT_EQ(textOf(u"原句"_s), u"The old call is deprecated and will be removed."_s);
    shoot(u"card"_s);
    // It goes by itself once the pointer leaves.
    user.moveTo(word.center() + QPoint(0, 300));
    EXPECT_TRUE(disappears(u"意思"_s));
}

TEST_F(Pointing, TheCardStandsAboveAFullScreenWindow)
{
    showPicture(page, u"deprecated"_s);
    const QPoint inPicture(150, 80);
    picture.setMinimumSize(0, 0);
    picture.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    picture.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    picture.showFullScreen();
    ASSERT_TRUE(QTest::qWaitFor([&] { return picture.height() == 800; }));
    rest(inPicture);
    ASSERT_TRUE(appears(u"意思"_s, 8000));
    const QPoint corner = find(u"Nimbrelle"_s)->area.topLeft();
    EXPECT_EQ(QColor(screenImage().pixel(corner + QPoint(7, 40))).name(), u"#fdfbf6"_s);
}

TEST_F(Pointing, NothingComesWhileTyping)
{
    const QRect word = showPicture(page, u"reluctant"_s);
    rest(word.center());
    for (int i = 0; i < 12; ++i) {
        type(u"a"_s);
        QTest::qWait(150);
    }
    EXPECT_FALSE(find(u"单词"_s));
    EXPECT_FALSE(find(u"意思"_s));
}

TEST_F(Pointing, AWordInAPictureIsReadWithTheKeyHeld)
{
    AppConfig config = practiceConfig();
    config.dwellLookup = false;
    program.process().terminate();
    ASSERT_TRUE(program.process().waitForFinished());
    writeConfig(config);
    startProgram();
    const QRect word = showPicture(page, u"reluctant"_s);
    rest(word.center());
    QTest::qWait(1500);
    ASSERT_FALSE(find(u"单词"_s));
    user.key(keysym::alt, true);
    EXPECT_TRUE(appears(u"意思"_s));
    EXPECT_EQ(textOf(u"单词"_s), u"reluctant"_s);
    user.key(keysym::alt, false);
}

TEST_F(Pointing, AFrameDrawnAfterTheDoublePressIsTranslated)
{
    const QRect word = showPicture(page, u"reluctant"_s);
    user.moveTo(word.topLeft() - QPoint(100, 40));
    tapTwice(keysym::super);
    ASSERT_TRUE(appears(u"拖一个框选中要翻译的英文 · Esc 取消"_s));
    shoot(u"overlay"_s);
    user.drag(picture.mapToGlobal(QPoint(5, 20)), picture.mapToGlobal(QPoint(500, 95)));
    ASSERT_TRUE(appears(u"译文"_s, 8000));
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture.isActiveWindow(); }, 2000));
}

TEST_F(Pointing, EscGivesUpAFrame)
{
    showPicture(page, u"reluctant"_s);
    tapTwice(keysym::super);
    ASSERT_TRUE(appears(u"拖一个框选中要翻译的英文 · Esc 取消"_s));
    user.tap(keysym::escape);
    EXPECT_TRUE(disappears(u"拖一个框选中要翻译的英文 · Esc 取消"_s));
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture.isActiveWindow(); }, 2000));
    EXPECT_FALSE(find(u"译文"_s));
}

} // namespace
