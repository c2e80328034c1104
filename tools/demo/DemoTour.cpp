#include "DemoNotebook.h"
#include "XScene.h"

#include <QDir>
#include <QFile>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr auto button = "push button"_L1;

/// Everything is twice as large as on an ordinary screen, so that the pictures are sharp on all of them.
constexpr int scale = 2;

constexpr int patience = 30'000;

QPoint scaled(int x, int y)
{
    return QPoint(x, y) * scale;
}

QRect scaled(int x, int y, int width, int height)
{
    return {x * scale, y * scale, width * scale, height * scale};
}

/// A reader who goes through the program once and keeps a picture of each stop. A stop that doesn't come
/// fails the tour.
class Tour : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        enlargeText();
        user.moveTo(scaled(1270, 790));
        DemoNotebook(folder.path(), SystemClock::shared().now()).fill();
        startProgram();
    }
    void TearDown() override
    {
        if (HasFailure())
            keep(u"failed-"_s + QLatin1String(testing::UnitTest::GetInstance()->current_test_info()->name()),
                screen);
    }

    /// The program's toolkit tells places in its own units.
    QList<AccessiblePart> shown() const override
    {
        QList<AccessiblePart> parts = XScene::shown();
        for (AccessiblePart &part : parts)
            part.area = scaled(part.area.x(), part.area.y(), part.area.width(), part.area.height());
        return parts;
    }

    /// As who has set the text to twice its size.
    void enlargeText()
    {
        const QByteArray resources = "Xft.dpi:\t" + QByteArray::number(96 * scale) + '\n';
        xcb_change_property(user.x.get(), XCB_PROP_MODE_REPLACE, user.x.root(), XCB_ATOM_RESOURCE_MANAGER,
            XCB_ATOM_STRING, 8, static_cast<quint32>(resources.size()), resources.constData());
        xcb_flush(user.x.get());
    }

    static QString readingPage()
    {
        QFile file(QStringLiteral(NIMBRELLE_READING_PAGE));
        EXPECT_TRUE(file.open(QFile::ReadOnly));
        return QString::fromUtf8(file.readAll());
    }

    void read()
    {
        openEditor(readingPage());
        place(activeWindow(), scaled(0, 20, 1280, 760));
        QTest::qWait(400); // to be painted in its new size
    }

    /// Without the editor's bars.
    QRect textArea() const
    {
        for (const AccessiblePart &part : accessible.shownBy(editor.id()))
            if (part.role == u"text"_s && part.area.height() > 100)
                return part.area;
        return screen;
    }

    /// A second start, which opens the settings of the first.
    void openSettings()
    {
        Running second;
        second.start(QStringLiteral(NIMBRELLE_PROGRAM), {}, {{u"NIMBRELLE_DATA_DIR"_s, folder.path()}});
        ASSERT_TRUE(second.process().waitForFinished());
        ASSERT_EQ(second.process().exitCode(), 0);
        ASSERT_TRUE(isActive(u"Nimbrelle 设置"_s));
    }

    /// The button that leads to a window; some of them say how much waits there, too.
    std::optional<AccessiblePart> offer(const QString &window) const
    {
        for (const AccessiblePart &part : shown())
            if (part.role == button && part.name.contains(window))
                return part;
        return std::nullopt;
    }

    void openFromSettings(const QString &window)
    {
        openSettings();
        ASSERT_TRUE(comes([&] { return offer(window).has_value(); }));
        click(offer(window)->area.center());
        ASSERT_TRUE(isActive(window));
    }

    /// @name A tour is no test of speed: a busy machine gets its time.
    /// @{
    bool appears(const QString &name) const { return XScene::appears(name, patience); }
    bool disappears(const QString &name) const { return XScene::disappears(name, patience); }
    bool comes(const std::function<bool()> &event) const { return QTest::qWaitFor(event, patience); }
    void press(const QString &name)
    {
        ASSERT_TRUE(appears(name)) << name.toStdString();
        XScene::press(name);
    }
    /// @}

    /// A row of the notebook, whatever marks are read out behind its word.
    std::optional<AccessiblePart> rowOf(const QString &word) const
    {
        for (const AccessiblePart &part : shown())
            if (part.role == u"list item"_s && part.name.startsWith(word))
                return part;
        return std::nullopt;
    }

    bool isActive(const QString &title)
    {
        return QTest::qWaitFor(
            [&] { return user.x.property(activeWindow(), user.x.atom("_NET_WM_NAME")) == title.toUtf8(); });
    }

    xcb_window_t activeWindow()
    {
        const auto windows = user.x.values(user.x.root(), user.x.atom("_NET_ACTIVE_WINDOW"));
        return windows.empty() ? XCB_WINDOW_NONE : windows.front();
    }

    QRect areaOf(xcb_window_t window) const
    {
        const auto size = user.x.reply(xcb_get_geometry_reply, xcb_get_geometry(user.x.get(), window));
        const auto at = user.x.reply(xcb_translate_coordinates_reply,
            xcb_translate_coordinates(user.x.get(), window, user.x.root(), 0, 0));
        return size && at ? QRect(at->dst_x, at->dst_y, size->width, size->height) : QRect();
    }

    void place(xcb_window_t window, QRect area) const
    {
        const std::array values{static_cast<quint32>(area.x()), static_cast<quint32>(area.y()),
            static_cast<quint32>(area.width()), static_cast<quint32>(area.height())};
        xcb_configure_window(user.x.get(), window,
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
            values.data());
        xcb_flush(user.x.get());
    }

    void closeActive()
    {
        const xcb_window_t window = activeWindow();
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = user.x.atom("_NET_CLOSE_WINDOW");
        event.data.data32[1] = 2; // as a pager would
        xcb_send_event(user.x.get(), 0, user.x.root(),
            XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
            reinterpret_cast<const char *>(&event));
        xcb_flush(user.x.get());
        EXPECT_TRUE(comes([&] { return activeWindow() != window; }));
    }

    /// The card, once its fade is over, with the lines that it belongs to.
    void keepCard(const QString &name, int left = 120)
    {
        const QList<AccessiblePart> parts = shown();
        ASSERT_FALSE(parts.isEmpty());
        const QRect card = parts.first().area;
        const QRect page = textArea();
        keep(name, card.adjusted(-left * scale, -112 * scale, 180 * scale, 44 * scale) & page);
    }

    void keep(const QString &name, QRect area) const
    {
        QTest::qWait(300); // what fades in is there, and the pointer's marks are gone
        const QDir folder(qEnvironmentVariable("NIMBRELLE_DEMO_PICTURES", u"."_s));
        const QString path = folder.filePath(name + u".png"_s);
        EXPECT_TRUE(screenImage().copy(area & screen).save(path, nullptr, 0)) << path.toStdString();
    }
    void keepActive(const QString &name) { keep(name, areaOf(activeWindow())); }

    const QRect screen = scaled(0, 0, 1280, 800);
};

TEST_F(Tour, Reading)
{
    read();
    doubleClick(inEditor(u"reluctant to rewrite"_s).topLeft() + scaled(20, 8));
    ASSERT_TRUE(appears(u"意思"_s));
    keepCard(u"card"_s);
    press(u"更多"_s);
    ASSERT_TRUE(appears(u"收起"_s));
    keepCard(u"card-unfolded"_s);
    user.tap(keysym::escape);
    ASSERT_TRUE(disappears(u"意思"_s));

    click(inEditor(u"TL;DR"_s).center());
    doubleClick(inEditor(u"flaky"_s).center());
    ASSERT_TRUE(appears(u"看答案"_s));
    keepCard(u"recall"_s);
    user.tap(keysym::escape);
    ASSERT_TRUE(disappears(u"单词"_s));

    click(inEditor(u"TL;DR"_s).center());
    user.drag(inEditor(u"Honestly"_s).topLeft() + scaled(1, 8),
        inEditor(u"is slow."_s).bottomRight() - scaled(1, 8));
    press(u"翻译选中的文字"_s);
    ASSERT_TRUE(appears(u"译文"_s));
    keepCard(u"translation"_s, 420);
}

TEST_F(Tour, Rounds)
{
    openFromSettings(u"复习"_s);
    ASSERT_TRUE(appears(u"看答案"_s));
    keepActive(u"review-question"_s);
    user.tap(' ');
    ASSERT_TRUE(appears(u"意思"_s));
    keepActive(u"review"_s);
}

TEST_F(Tour, Notebook)
{
    openFromSettings(u"生词本"_s);
    place(activeWindow(), scaled(200, 60, 860, 660));
    ASSERT_TRUE(comes([&] { return areaOf(activeWindow()).width() == 860 * scale; }));
    ASSERT_TRUE(comes([&] { return rowOf(u"rewrite"_s).has_value(); }));
    click(rowOf(u"rewrite"_s)->area.center());
    ASSERT_TRUE(says(u"重写"_s));
    keepActive(u"notebook"_s);
}

TEST_F(Tour, Coach)
{
    openFromSettings(u"AI 教练"_s);
    ASSERT_TRUE(says(u"就能换成真正的回答"_s, patience)); // the last that the practice provider says
    ASSERT_TRUE(disappears(u"停止"_s));
    keepActive(u"coach"_s);
}

TEST_F(Tour, Settings)
{
    openSettings();
    place(activeWindow(), scaled(300, 40, 560, 616));
    ASSERT_TRUE(comes([&] { return areaOf(activeWindow()).height() == 616 * scale; }));
    keepActive(u"settings"_s);
}

TEST_F(Tour, AddWord)
{
    openFromSettings(u"查词"_s);
    type(u"hotel califonil"_s);
    user.tap(keysym::enter);
    ASSERT_TRUE(appears(u"重新输入"_s));
    keepActive(u"add-word"_s);
}

/// The same on a dark desktop.
class DarkTour : public Tour {
protected:
    void SetUp() override
    {
        qputenv("GTK_THEME", "Adwaita:dark");
        Tour::SetUp();
    }
    void TearDown() override
    {
        qunsetenv("GTK_THEME");
        Tour::TearDown();
    }
};

TEST_F(DarkTour, ReadsAndReviews)
{
    read();
    doubleClick(inEditor(u"reluctant to rewrite"_s).topLeft() + scaled(20, 8));
    ASSERT_TRUE(appears(u"意思"_s));
    keepCard(u"card-dark"_s);
    user.tap(keysym::escape);
    openFromSettings(u"复习"_s);
    user.tap(' ');
    ASSERT_TRUE(appears(u"意思"_s));
    keepActive(u"review-dark"_s);
}

} // namespace
