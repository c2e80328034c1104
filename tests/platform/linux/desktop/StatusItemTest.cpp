#include "platform/linux/bus/LinuxStatusItem.h"
#include "platform/linux/desktop/StatusHost.h"
#include "support/Printers.h"

#include <QSignalSpy>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

QImage filled(int pixels, QRgb colour)
{
    QImage image(pixels, pixels, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

class StatusItemTest : public testing::Test {
protected:
    StatusItemTest()
    {
        QObject::connect(
            &item, &StatusItem::chosen, [this](const MenuEntry &entry) { chosen.append(entry.title); });
    }

    void show()
    {
        item.show([this](StatusItem::MenuUse use) {
            openings += use == StatusItem::MenuUse::opening;
            return menu;
        });
    }
    bool isHosting(StatusNotifierItem::Hosting wanted)
    {
        return QTest::qWaitFor([&] { return item.hosting() == wanted; });
    }
    bool isRegistered()
    {
        return QTest::qWaitFor([&] { return host.item() == QDBusConnection::sessionBus().baseService(); });
    }

    QList<MenuEntry> menu{{.title = u"run_time  意思"_s, .symbol = u"speaker.wave.2"_s, .toolTip = u"朗读"_s},
        {.kind = MenuEntry::Kind::separator}, {.title = u"在学 1/30"_s, .indent = 1},
        {.kind = MenuEntry::Kind::check, .title = u"划选"_s, .isChecked = true}, {.title = u"退出"_s}};
    int openings = 0;
    QStringList chosen;
    StatusHost host;
    StatusNotifierItem item{QDBusConnection::sessionBus(),
        {{}, {filled(22, 0x80402010), filled(44, 0xFFFFFFFF)},
            [](const QString &) { return filled(16, 0xFF00FF00); }}};
};

using Hosting = StatusNotifierItem::Hosting;

TEST_F(StatusItemTest, WaitsForABarThatComesLateGoesAndComesBack)
{
    show();
    EXPECT_TRUE(isHosting(Hosting::absent));
    ASSERT_TRUE(host.come());
    EXPECT_TRUE(isHosting(Hosting::present));
    EXPECT_TRUE(isRegistered());
    host.leave();
    EXPECT_TRUE(isHosting(Hosting::absent));
    host.setHasHost(false);
    ASSERT_TRUE(host.come());
    EXPECT_TRUE(isRegistered());
    host.setHasHost(true);
    EXPECT_TRUE(isHosting(Hosting::present)) << "the bar behind the watcher came later";
    host.setHasHost(false);
    EXPECT_TRUE(isHosting(Hosting::absent));
}

TEST_F(StatusItemTest, TellsTheBarItsWordAndItsPicture)
{
    ASSERT_TRUE(host.come());
    item.setTitle(u"reluctant"_s);
    item.setToolTip(u"reluctant"_s, u"不情愿的"_s);
    show();
    ASSERT_TRUE(isRegistered());
    EXPECT_EQ(host.property(u"XAyatanaLabel"_s), u"reluctant"_s);
    EXPECT_EQ(host.property(u"Status"_s), u"Active"_s);
    EXPECT_EQ(host.property(u"ItemIsMenu"_s), true);
    const auto toolTip = qdbus_cast<NotifierToolTip>(host.property(u"ToolTip"_s));
    EXPECT_EQ(toolTip.title, u"reluctant"_s);
    EXPECT_EQ(toolTip.text, u"不情愿的"_s);
    const auto icon = qdbus_cast<QList<NotifierPixmap>>(host.property(u"IconPixmap"_s));
    ASSERT_EQ(icon.size(), 2);
    EXPECT_EQ(icon[0].width, 22);
    EXPECT_EQ(icon[0].pixels.first(4), QByteArray::fromHex("80402010"));
    EXPECT_EQ(icon[1].pixels.size(), 44 * 44 * 4);

    item.setTitle(u"ngl"_s);
    item.setTitle(u"ngl"_s);
    item.setTitle({});
    EXPECT_TRUE(QTest::qWaitFor([&] { return host.labels().size() >= 2; }));
    EXPECT_THAT(host.labels(), ElementsAre(u"ngl/nnnnnnnnnnnnnnnn"_s, u"/"_s));
}

TEST_F(StatusItemTest, LaysItsMenuOutForTheBarAndTakesItsClicks)
{
    ASSERT_TRUE(host.come());
    show();
    ASSERT_TRUE(isRegistered());
    EXPECT_THAT(
        host.readMenu(), ElementsAre(u"run__time  意思"_s, u"---"_s, u"　在学 1/30"_s, u"划选"_s, u"退出"_s));
    EXPECT_EQ(openings, 0);
    const QVariantMap word = host.line(u"run__time  意思"_s).properties;
    EXPECT_EQ(QImage::fromData(word.value(u"icon-data"_s).toByteArray()).size(), QSize(16, 16));
    EXPECT_EQ(word.value(u"accessible-desc"_s), u"朗读 run_time  意思"_s);
    const QVariantMap check = host.line(u"划选"_s).properties;
    EXPECT_EQ(check.value(u"toggle-type"_s), u"checkmark"_s);
    EXPECT_EQ(check.value(u"toggle-state"_s), 1);

    host.click(u"退出"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return chosen == QStringList{u"退出"_s}; }));
    EXPECT_FALSE(host.aboutToShow()) << "nothing has changed";
    EXPECT_EQ(openings, 1);
}

TEST_F(StatusItemTest, RebuildsTheMenuAtEachOpeningAndStillKnowsTheOneBefore)
{
    ASSERT_TRUE(host.come());
    show();
    ASSERT_TRUE(isRegistered());
    host.readMenu();
    const int learning = host.line(u"　在学 1/30"_s).id;
    const int quit = host.line(u"退出"_s).id;
    menu[2].title = u"在学 2/30"_s;
    EXPECT_TRUE(host.aboutToShow());
    host.click(u"　在学 1/30"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return chosen == QStringList{u"在学 1/30"_s}; }))
        << "a click means what was read";
    host.readMenu();
    EXPECT_NE(host.line(u"　在学 2/30"_s).id, learning);
    EXPECT_EQ(host.line(u"退出"_s).id, quit) << "what says the same stays the same item";

    const QVariantList unknown = host.callMenu(u"EventGroup"_s,
        {QVariant::fromValue(QList<DBusMenuEvent>{
            {0, u"opened"_s, QDBusVariant(0), 0}, {999, u"clicked"_s, QDBusVariant(0), 0}})});
    EXPECT_EQ(qdbus_cast<QList<int>>(unknown.value(0)), QList<int>{999});
    EXPECT_EQ(openings, 2);
    const auto group = qdbus_cast<QList<DBusMenuProperties>>(
        host.callMenu(u"GetGroupProperties"_s,
                {QVariant::fromValue(QList<int>{quit, 999}), QStringList{u"label"_s}})
            .value(0));
    ASSERT_EQ(group.size(), 1);
    EXPECT_EQ(group[0].properties, (QVariantMap{{u"label"_s, u"退出"_s}}));
}

TEST_F(StatusItemTest, AsksForItsMenuWhereTheBarDoesNotDrawIt)
{
    ASSERT_TRUE(host.come());
    show();
    ASSERT_TRUE(isRegistered());
    const QSignalSpy asked(&item, &StatusNotifierItem::menuRequested);
    host.callItem(u"Activate"_s, {30, 40});
    host.callItem(u"ContextMenu"_s, {50, 60});
    host.callItem(u"SecondaryActivate"_s, {1, 2});
    ASSERT_EQ(asked.size(), 2);
    EXPECT_EQ(asked[0][0].toPoint(), QPoint(30, 40));
}

struct FakeTray final : StatusItem {
    FakeTray(int &count, QString &toolTip) : m_count(++count), m_toolTip(toolTip) { }
    ~FakeTray() override { --m_count; }
    void show(MenuSource) override { }
    void setTitle(const QString &) override { }
    bool isSeen() const override { return true; }
    void setToolTip(const QString &title, const QString &) override { m_toolTip = title; }

    int &m_count;
    QString &m_toolTip;
};

TEST(LinuxStatusItem, UsesAnOlderTrayOnlyWhileNoBarIsThere)
{
    int trays = 0;
    QString toolTip;
    QPoint poppedUp;
    StatusHost host;
    LinuxStatusItem item(QDBusConnection::sessionBus(), {},
        {[&] { return std::make_unique<FakeTray>(trays, toolTip); },
            [&](const QList<MenuEntry> &, QPoint at) { poppedUp = at; }});
    item.setToolTip(u"reluctant"_s, {});
    item.show([](StatusItem::MenuUse) { return QList<MenuEntry>(); });
    EXPECT_EQ(trays, 0) << "nobody knows yet";
    EXPECT_TRUE(QTest::qWaitFor([&] { return trays == 1; }));
    EXPECT_EQ(toolTip, u"reluctant"_s);
    ASSERT_TRUE(host.come());
    EXPECT_TRUE(QTest::qWaitFor([&] { return trays == 0; }));
    host.callItem(u"Activate"_s, {30, 40});
    EXPECT_EQ(poppedUp, QPoint(30, 40));
    host.leave();
    EXPECT_TRUE(QTest::qWaitFor([&] { return trays == 1; }));
}

TEST(StatusItemWithoutBus, StaysUnseenAndFailsNothing)
{
    StatusNotifierItem item(QDBusConnection(u"no such bus"_s), {});
    item.setTitle(u"reluctant"_s);
    item.show([](StatusItem::MenuUse) { return QList<MenuEntry>(); });
    EXPECT_EQ(item.hosting(), StatusNotifierItem::Hosting::absent);
    item.setTitle(u"ngl"_s);
}

} // namespace
