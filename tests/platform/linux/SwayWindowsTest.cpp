#include "platform/linux/wayland/SwayWindows.h"

#include "support/Await.h"

#include <QLocalServer>
#include <QTemporaryDir>

#include <cstring>
#include <gtest/gtest.h>
#include <unistd.h>

namespace nimbrelle {

using namespace Qt::StringLiterals;

namespace {

QByteArray message(quint32 kind, const QByteArray &text)
{
    QByteArray bytes = "i3-ipc";
    const auto size = static_cast<quint32>(text.size());
    bytes.append(reinterpret_cast<const char *>(&size), sizeof size);
    bytes.append(reinterpret_cast<const char *>(&kind), sizeof kind);
    return bytes + text;
}

QByteArray window(int id, const QByteArray &more)
{
    return R"({"id":)" + QByteArray::number(id)
        + R"(,"visible":true,"name":"a title","rect":{"x":10,"y":20,"width":300,"height":200},)"
          R"("window_rect":{"x":2,"y":4,"width":296,"height":190},)"
        + more + "}";
}

/// Answers each question for the tree with what stands there then, in two pieces.
class FakeSway final : public QLocalServer {
public:
    FakeSway()
    {
        listen(m_folder.filePath(u"sway.sock"_s));
        connect(this, &QLocalServer::newConnection, this, [this] {
            m_caller = nextPendingConnection();
            connect(m_caller, &QLocalSocket::readyRead, this, &FakeSway::answer);
        });
    }

    void tellOfAChange() { m_caller->write(message(0x80000003, R"({"change":"focus"})")); }
    void hangUp() { m_caller->abort(); }

    QByteArray tree = "{}";

private:
    void answer()
    {
        m_received += m_caller->readAll();
        while (m_received.size() >= 14) {
            quint32 head[2];
            std::memcpy(head, m_received.constData() + 6, sizeof head);
            m_received.remove(0, 14 + qsizetype(head[0]));
            const QByteArray reply = message(head[1], head[1] == 4 ? tree : R"({"success":true})");
            m_caller->write(reply.first(9));
            m_caller->flush();
            m_caller->write(reply.sliced(9));
        }
    }

    QTemporaryDir m_folder;
    QLocalSocket *m_caller = nullptr;
    QByteArray m_received;
};

} // namespace

TEST(SwayWindows, FollowTheTreeAndLoseItWithTheSocket)
{
    FakeSway sway;
    sway.tree = R"({"nodes":[{"nodes":[)"
        + window(5, R"("pid":77,"app_id":"org.keepassxc.KeePassXC","focused":true)")
        + R"(],"floating_nodes":[)"
        + window(6, R"("pid":78,"app_id":null,"window_properties":{"class":"Xpdf","instance":"xpdf"})") + ","
        + window(7, R"("pid":)" + QByteArray::number(::getpid()) + R"(,"app_id":null)") + "]}]}";
    SwayWindows windows(sway.fullServerName(), [](QPointF at) { return (at * 2).toPoint(); });
    int changes = 0;
    QObject::connect(&windows, &SessionWindows::activeChanged, &windows, [&] { ++changes; });
    EXPECT_TRUE(windows.isOffered());
    EXPECT_FALSE(windows.isTold());
    ASSERT_TRUE(waitUntil([&] { return windows.isTold(); }));
    ASSERT_EQ(windows.all().size(), 3);
    const SessionWindow first = windows.all()[0];
    EXPECT_EQ(first.application.bundleID, u"com.apple.Passwords"_s) << "known by its Wayland name as well";
    EXPECT_EQ(first.application.process, 77);
    EXPECT_EQ(first.area.topLeft(), QPoint(24, 48)) << "of the content, in the X server's pixels";
    EXPECT_TRUE(first.isActive);
    EXPECT_EQ(windows.all()[1].application.bundleID, u"Xpdf"_s);
    EXPECT_TRUE(windows.all()[2].isOwn);
    EXPECT_EQ(windows.all()[2].application.bundleID, u"nimbrelle"_s);
    EXPECT_EQ(changes, 1);

    sway.tree = R"({"nodes":[]})";
    sway.tellOfAChange();
    ASSERT_TRUE(waitUntil([&] { return windows.all().isEmpty(); }));
    EXPECT_EQ(changes, 2);
    sway.hangUp();
    ASSERT_TRUE(waitUntil([&] { return !windows.isTold(); }));
    EXPECT_FALSE(windows.isOffered());
}

} // namespace nimbrelle
