#include "platform/linux/bus/PortalAppearance.h"

#include "platform/linux/x11/XSettings.h"
#include "shell/views/FollowDesktop.h"
#include "widgets/Theme.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QDataStream>
#include <QTest>

#include <gtest/gtest.h>

/// The desktop's wishes, told by a portal of ours on the private bus of the test session.
namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

const auto service = u"org.freedesktop.portal.Desktop"_s;
const auto path = u"/org/freedesktop/portal/desktop"_s;
const auto interface = u"org.freedesktop.portal.Settings"_s;
const auto common = u"org.freedesktop.appearance"_s;

class FakePortal final : public QDBusVirtualObject {
public:
    FakePortal() : m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"portal"_s))
    {
        qDBusRegisterMetaType<PortalSettings>();
        m_bus.registerVirtualObject(path, this);
    }
    ~FakePortal() override
    {
        m_bus.unregisterService(service);
        QDBusConnection::disconnectFromBus(u"portal"_s);
    }
    bool appear() { return m_bus.registerService(service); }
    void tell(const QString &group, const QString &key, const QVariant &value)
    {
        settings[group][key] = value;
        QDBusMessage signal = QDBusMessage::createSignal(path, interface, u"SettingChanged"_s);
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

    bool handleMessage(const QDBusMessage &message, const QDBusConnection &bus) override
    {
        if (message.member() != u"ReadAll")
            return false;
        ++asked;
        bus.send(message.createReply(QVariant::fromValue(settings)));
        return true;
    }
    QString introspect(const QString &) const override { return {}; }

    PortalSettings settings;
    int asked = 0;

private:
    QDBusConnection m_bus;
};

class PortalAppearanceTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!QDBusConnection::sessionBus().isConnected())
            GTEST_SKIP() << "there is no session bus";
    }
};

TEST_F(PortalAppearanceTest, TheThemeFollowsAtOnce)
{
    FakePortal portal;
    portal.settings = {{common, {{u"color-scheme"_s, 1U}}}};
    ASSERT_TRUE(portal.appear());
    PortalAppearance appearance(QDBusConnection::sessionBus(), {});
    Theme theme;
    followDesktop(theme, appearance);
    EXPECT_EQ(theme.scheme(), Theme::Scheme::light); // nobody has waited for the answer
    EXPECT_TRUE(QTest::qWaitFor([&] { return theme.scheme() == Theme::Scheme::dark; }));
    EXPECT_FALSE(theme.isStill());
    portal.tell(u"org.gnome.desktop.interface"_s, u"enable-animations"_s, false);
    EXPECT_TRUE(QTest::qWaitFor([&] { return theme.isStill(); }));
    portal.tell(common, u"color-scheme"_s, 2U);
    EXPECT_TRUE(QTest::qWaitFor([&] { return theme.scheme() == Theme::Scheme::light; }));
}

TEST_F(PortalAppearanceTest, APortalMayComeLaterThanWeDo)
{
    PortalAppearance appearance(QDBusConnection::sessionBus(), {.isDark = true});
    QTest::qWait(50);
    EXPECT_TRUE(appearance.current().isDark); // the guess
    FakePortal portal;
    portal.settings = {{common, {{u"color-scheme"_s, 2U}}}};
    ASSERT_TRUE(portal.appear());
    EXPECT_TRUE(QTest::qWaitFor([&] { return !appearance.current().isDark; }));
    EXPECT_GT(portal.asked, 0);
}

TEST_F(PortalAppearanceTest, WithoutABusTheGuessStands)
{
    const PortalAppearance appearance(QDBusConnection(u"none"_s), {.isDark = true, .isStill = true});
    EXPECT_EQ(appearance.current(), (Appearance{true, true}));
}

/// One text and one number, as a settings manager of this byte order writes them.
QByteArray sharedSettings(const QString &theme, qint32 animations, QDataStream::ByteOrder order)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setByteOrder(order);
    const auto put = [&](const QByteArray &text) {
        stream.writeRawData(text.constData(), static_cast<int>(text.size()));
        for (qsizetype i = text.size(); i % 4 != 0; ++i)
            stream << quint8{0};
    };
    stream << quint8{order == QDataStream::BigEndian} << quint8{0} << quint16{0} << quint32{7} << quint32{2};
    stream << quint8{1} << quint8{0} << quint16{13};
    put("Net/ThemeName");
    stream << quint32{1} << static_cast<quint32>(theme.size());
    put(theme.toUtf8());
    stream << quint8{0} << quint8{0} << quint16{20};
    put("Gtk/EnableAnimations");
    stream << quint32{2} << animations;
    return bytes;
}

TEST(XSettingsOf, ReadsBothByteOrdersAndStopsAtAFault)
{
    for (const auto order : {QDataStream::LittleEndian, QDataStream::BigEndian}) {
        const QByteArray whole = sharedSettings(u"Greybird-dark"_s, 0, order);
        EXPECT_EQ(xSettingsOf(whole).value("Net/ThemeName"), u"Greybird-dark"_s);
        EXPECT_EQ(xSettingsOf(whole).value("Gtk/EnableAnimations"), 0);
        for (qsizetype length = 0; length < whole.size(); ++length)
            EXPECT_LT(xSettingsOf(whole.first(length)).size(), 2) << length;
    }
}

TEST(XSettingsManager, IsFollowedFromItsStart)
{
    XConnection x, manager;
    if (!x.isOpen())
        GTEST_SKIP() << "there is no display";
    XSettings settings(x);
    const PortalAppearance appearance(QDBusConnection(u"none"_s), {}, &settings);
    const xcb_window_t window = xcb_generate_id(manager.get());
    xcb_create_window(manager.get(), 0, window, manager.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
        XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto write = [&](const QString &theme, int animations) {
        const QByteArray bytes = sharedSettings(theme, animations, QDataStream::LittleEndian);
        xcb_change_property(manager.get(), XCB_PROP_MODE_REPLACE, window, manager.atom("_XSETTINGS_SETTINGS"),
            manager.atom("_XSETTINGS_SETTINGS"), 8, static_cast<quint32>(bytes.size()), bytes.constData());
        xcb_flush(manager.get());
    };
    write(u"Greybird-dark"_s, 1);
    const xcb_atom_t selection = manager.atom("_XSETTINGS_S0");
    xcb_set_selection_owner(manager.get(), window, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t announcement{};
    announcement.response_type = XCB_CLIENT_MESSAGE;
    announcement.format = 32;
    announcement.window = manager.root();
    announcement.type = manager.atom("MANAGER");
    announcement.data.data32[1] = selection;
    xcb_send_event(manager.get(), 0, manager.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
        reinterpret_cast<const char *>(&announcement));
    xcb_flush(manager.get());
    EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.current() == Appearance{true, false}; }));
    write(u"Greybird"_s, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return appearance.current() == Appearance{false, true}; }));
}

TEST(AppearanceOf, TakesTheClearestWord)
{
    const auto gnome = u"org.gnome.desktop.interface"_s;
    struct Case {
        PortalSettings settings;
        Appearance guess, expected;
    };
    const Case cases[]{{{}, {true, true}, {true, true}},
        {{{common, {{u"color-scheme"_s, 2U}}}}, {true, false}, {false, false}},
        {{{common, {{u"color-scheme"_s, 0U}}}, {gnome, {{u"gtk-theme"_s, u"Yaru-dark"_s}}}}, {},
            {true, false}},
        {{{common, {{u"color-scheme"_s, 2U}}}, {gnome, {{u"gtk-theme"_s, u"Yaru-dark"_s}}}}, {}, {}},
        {{{common, {{u"reduced-motion"_s, 1U}}}, {gnome, {{u"enable-animations"_s, true}}}}, {},
            {false, true}},
        {{{gnome, {{u"enable-animations"_s, true}}}}, {false, true}, {}},
        {{{u"org.kde.kdeglobals.KDE"_s, {{u"AnimationDurationFactor"_s, u"0"_s}}}}, {}, {false, true}},
        {{{common, {{u"color-scheme"_s, u"nonsense"_s}}}}, {}, {}}};
    for (const Case &c : cases)
        EXPECT_EQ(appearanceOf(c.settings, c.guess), c.expected);
}

} // namespace
} // namespace nimbrelle
