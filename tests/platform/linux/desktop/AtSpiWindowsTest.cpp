#include "platform/linux/wayland/AtSpiWindows.h"

#include "platform/linux/desktop/AccessibleReference.h"
#include "support/Await.h"

#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

/// A program with one window, which the registry lists.
class FakeProgram final : public QDBusVirtualObject {
public:
    FakeProgram(const QString &address, const QString &name)
        : m_name(name), m_bus(QDBusConnection::connectToBus(address, name))
    {
        qDBusRegisterMetaType<Reference>();
        qDBusRegisterMetaType<QList<Reference>>();
        m_bus.registerVirtualObject(atspi::rootPath, this, QDBusConnection::SubPath);
        QDBusMessage embed = QDBusMessage::createMethodCall(
            atspi::registryService, atspi::rootPath, u"org.a11y.atspi.Socket"_s, u"Embed"_s);
        embed << QVariant::fromValue(
            Reference{.program = m_bus.baseService(), .object = QDBusObjectPath(atspi::rootPath)});
        m_bus.asyncCall(embed).waitForFinished();
    }
    ~FakeProgram() override { QDBusConnection::disconnectFromBus(m_name); }

    void become(bool active)
    {
        isActive = active;
        m_bus.send(QDBusMessage::createSignal(
                       window, u"org.a11y.atspi.Event.Window"_s, active ? u"Activate"_s : u"Deactivate"_s)
            << QString() << 0 << 0 << QVariant::fromValue(QDBusVariant(0)) << QVariantMap());
    }

    bool handleMessage(const QDBusMessage &question, const QDBusConnection &bus) override
    {
        question.setDelayedReply(true);
        if (!isHung)
            bus.send(question.createReply(answerTo(question)));
        return true;
    }
    QString introspect(const QString &) const override { return {}; }

    bool isActive = false;
    bool isHung = false;

private:
    QVariant answerTo(const QDBusMessage &question) const
    {
        const bool isRoot = question.path() == atspi::rootPath;
        if (question.member() == u"GetState")
            return QVariant::fromValue(QList<quint32>{isActive ? 1U << atspi::activeState : 0U, 0U});
        if (question.member() == u"GetChildren")
            return QVariant::fromValue(
                QList<Reference>{{.program = m_bus.baseService(), .object = QDBusObjectPath(window)}});
        return QVariant::fromValue(QDBusVariant(isRoot ? m_name : u"about "_s + m_name));
    }

    inline static const QString window = atspi::rootPath + u"/1"_s;

    QString m_name;
    QDBusConnection m_bus;
};

class AtSpiWindowsTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QDBusReply<QString> told = QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
        ASSERT_TRUE(told.isValid());
        address = told;
    }

    std::unique_ptr<AtSpiWindows> made(qint64 ownProcess = 1)
    {
        auto windows = std::make_unique<AtSpiWindows>(
            bus, [this] { return onX; }, ownProcess);
        QObject::connect(windows.get(), &SessionWindows::activeChanged, windows.get(), [this] { ++changes; });
        return windows;
    }
    static QString active(const SessionWindows &windows)
    {
        return windows.all().isEmpty() ? QString()
                                       : windows.all().first().application.bundleID.value_or(u"?"_s);
    }

    AtSpiBus bus;
    QString address;
    std::optional<Application> onX;
    int changes = 0;
};

TEST_F(AtSpiWindowsTest, TheActiveOneIsFoundAtTheStartAndFollowed)
{
    FakeProgram vault(address, u"KeePassXC"_s), reader(address, u"evince"_s);
    vault.isActive = true;
    const auto windows = made();
    EXPECT_TRUE(windows->isOffered());
    EXPECT_FALSE(windows->isTold());
    ASSERT_TRUE(waitUntil([&] { return windows->isTold(); }));
    const SessionWindow first = windows->all().first();
    EXPECT_EQ(first.application.bundleID, u"com.apple.Passwords"_s);
    EXPECT_EQ(first.application.windowTitle, u"about KeePassXC"_s);
    EXPECT_EQ(first.application.process, QCoreApplication::applicationPid());
    EXPECT_TRUE(first.isActive && first.area.isNull() && !first.isOwn);
    EXPECT_EQ(changes, 1);

    reader.become(true); // the other one has not said yet that it no longer is
    ASSERT_TRUE(waitUntil([&] { return active(*windows) == u"evince"; }));
    vault.become(false);
    QCoro::waitFor(windows->refresh());
    EXPECT_EQ(active(*windows), u"evince"_s);
    EXPECT_EQ(changes, 2);

    reader.become(false);
    ASSERT_TRUE(waitUntil([&] { return !windows->isTold(); })) << "it may be one that is not on the bus";
    onX = Application{.bundleID = u"Xpdf"_s, .window = 7};
    QCoro::waitFor(windows->refresh());
    EXPECT_EQ(active(*windows), u"Xpdf"_s);
    EXPECT_EQ(changes, 4);
}

TEST_F(AtSpiWindowsTest, OneThatHangsOrLeavesIsNotWaitedForLong)
{
    FakeProgram editor(address, u"gedit"_s);
    auto viewer = std::make_unique<FakeProgram>(address, u"eog"_s);
    editor.isActive = true;
    const auto windows = made();
    ASSERT_TRUE(waitUntil([&] { return active(*windows) == u"gedit"; }));
    viewer->become(true);
    ASSERT_TRUE(waitUntil([&] { return active(*windows) == u"eog"; }));
    viewer->isHung = true;
    QElapsedTimer time;
    time.start();
    QCoro::waitFor(windows->refresh());
    EXPECT_LT(time.elapsed(), 400);
    EXPECT_FALSE(windows->isTold());
    viewer.reset();
    EXPECT_TRUE(waitUntil([&] { return active(*windows) == u"gedit"; }));
}

TEST_F(AtSpiWindowsTest, OwnWindowsAreKnownAsSuch)
{
    FakeProgram own(address, u"anything"_s);
    own.isActive = true;
    const auto windows = made(QCoreApplication::applicationPid());
    ASSERT_TRUE(waitUntil([&] { return windows->isTold(); }));
    EXPECT_TRUE(windows->all().first().isOwn);
    EXPECT_EQ(active(*windows), u"nimbrelle"_s);
}

} // namespace
} // namespace nimbrelle
