#include "platform/linux/wayland/KWinWindows.h"

#include "support/Await.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <unistd.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QString window(const QString &id, const QString &more)
{
    return uR"({"id":"{%1-0000-0000-0000-000000000000}","title":"a title",)"
           R"("area":{"x":10,"y":20,"width":300,"height":200},%2})"_s.arg(id, more);
}

/// On a connection of its own. It runs no script, but sends, where each wants it, what stands there then.
class FakeKWin final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kwin.Scripting")

public:
    FakeKWin() { come(); }
    ~FakeKWin() override { leave(); }

    void come()
    {
        m_bus.registerObject(u"/Scripting"_s, this, QDBusConnection::ExportScriptableSlots);
        m_bus.registerService(KWinScript::service);
    }
    void leave() { m_bus.unregisterService(KWinScript::service); }
    void forget() { m_scripts.clear(); }
    QStringList loaded() const { return m_scripts.keys(); }
    QString script(const QString &name) const { return m_scripts.value(name); }

    void tell(QDBusConnection bus)
    {
        static const QRegularExpression call(uR"x(callDBus\("([^"]+)", "([^"]+)", "([^"]+)", "([^"]+)")x"_s);
        const auto found = call.match(m_scripts.value(u"nimbrelle"_s));
        if (!found.hasMatch())
            return;
        QDBusMessage message = QDBusMessage::createMethodCall(
            found.captured(1), found.captured(2), found.captured(3), found.captured(4));
        message << windows;
        bus.send(message);
    }
    void tell() { tell(m_bus); }

    QString windows = u"[]"_s;

public slots:
    Q_SCRIPTABLE bool isScriptLoaded(const QString &name) { return m_scripts.contains(name); }
    Q_SCRIPTABLE bool unloadScript(const QString &name) { return m_scripts.remove(name) > 0; }
    Q_SCRIPTABLE int loadScript(const QString &path, const QString &name)
    {
        QFile file(path);
        if (m_scripts.contains(name) || !file.open(QIODevice::ReadOnly))
            return -1;
        m_scripts[name] = QString::fromUtf8(file.readAll());
        return 0;
    }
    Q_SCRIPTABLE void start() { tell(); }

private:
    QDBusConnection m_bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"kwin"_s);
    QMap<QString, QString> m_scripts;
};

struct KWinWindowsTest : testing::Test {
    std::unique_ptr<KWinWindows> make()
    {
        return std::make_unique<KWinWindows>(QDBusConnection::sessionBus(),
            KWinWindows::Conversions{.toPixel = [](QPointF at) { return (at * 2).toPoint(); },
                .programOnX =
                    [](quint32 window) {
                        Application application;
                        application.bundleID = u"X%1"_s.arg(window);
                        return application;
                    }});
    }

    FakeKWin kwin;
};

} // namespace

TEST_F(KWinWindowsTest, AreThoseThatTheScriptTellsOfInTheirOrder)
{
    kwin.windows = u"["_s
        + window(
            u"00000005"_s, u"\"process\":77,\"class\":\"org.keepassxc.KeePassXC\",\"name\":\"python3\""_s)
        + u","_s + window(u"00000006"_s, u"\"process\":78,\"class\":\"xpdf\",\"onX\":9,\"active\":true"_s)
        + u","_s + window(u"00000007"_s, u"\"process\":%1,\"class\":\"\""_s.arg(::getpid())) + u"]"_s;
    const auto windows = make();
    int changes = 0;
    QObject::connect(windows.get(), &SessionWindows::activeChanged, windows.get(), [&] { ++changes; });
    EXPECT_TRUE(windows->isOffered());
    EXPECT_FALSE(windows->isTold());
    ASSERT_TRUE(waitUntil([&] { return windows->isTold(); }));
    ASSERT_EQ(windows->all().size(), 3);
    const SessionWindow first = windows->all()[0];
    EXPECT_EQ(first.application.bundleID, u"com.apple.Passwords"_s);
    EXPECT_EQ(first.application.process, 77);
    EXPECT_EQ(first.application.windowTitle, u"a title"_s);
    EXPECT_EQ(first.area, QRect(20, 40, 600, 400)) << "in the X server's pixels";
    EXPECT_EQ(windows->all()[1].application.bundleID, u"X9"_s) << "with the capitals it has there";
    EXPECT_TRUE(windows->all()[1].isActive);
    EXPECT_TRUE(windows->all()[2].isOwn);
    EXPECT_EQ(changes, 1);

    const Application front = windows->all()[1].application;
    kwin.windows = u"[]"_s;
    kwin.tell(QDBusConnection::sessionBus());
    await([](SessionWindows &windows) -> QCoro::Task<bool> {
        co_await windows.refresh();
        co_return true;
    }(*windows));
    EXPECT_EQ(windows->all().size(), 3) << "nobody but KWin is believed";
    windows->activate(front);
    ASSERT_TRUE(waitUntil([&] { return windows->all().isEmpty(); }));
    EXPECT_TRUE(kwin.script(u"nimbrelle-activate"_s).contains(u"\"{00000006-0000-0000-\""_s));
    EXPECT_EQ(changes, 2);
}

TEST_F(KWinWindowsTest, OutliveKWinAndTakeTheScriptAway)
{
    auto windows = make();
    ASSERT_TRUE(waitUntil([&] { return windows->isTold(); }));
    kwin.forget();
    kwin.windows = u"["_s + window(u"00000005"_s, u"\"active\":true"_s) + u"]"_s;
    await([](SessionWindows &windows) -> QCoro::Task<bool> {
        co_await windows.refresh();
        co_return true;
    }(*windows));
    EXPECT_EQ(windows->all().size(), 1) << "asked for again, with the script that was lost";

    kwin.leave();
    ASSERT_TRUE(waitUntil([&] { return !windows->isOffered(); }));
    EXPECT_FALSE(windows->isTold());
    EXPECT_TRUE(windows->all().isEmpty());
    kwin.come();
    ASSERT_TRUE(waitUntil([&] { return windows->isTold(); }));
    windows.reset();
    EXPECT_TRUE(waitUntil([&] { return kwin.loaded().isEmpty(); }));
}

} // namespace nimbrelle

#include "KWinWindowsTest.moc"
