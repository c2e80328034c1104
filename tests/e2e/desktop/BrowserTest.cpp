#include "XScene.h"
#include "platform/linux/x11/XFrontApplication.h"

#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

#include <gmock/gmock.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

/// A page that is one word all over, so that it is hit wherever the browser puts it.
class Page : public QTcpServer {
public:
    Page()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *visitor = nextPendingConnection();
            connect(visitor, &QTcpSocket::readyRead, visitor, [visitor] {
                const QByteArray line = "<p>Reluctant <a href='#'>readers</a> <em>wait</em>.</p>";
                const QByteArray body = "<!doctype html><title>On waiting</title>"
                                        "<style>p{font:32px/48px sans-serif;margin:0 20px}</style>"
                    + line.repeated(30);
                visitor->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nConnection: close\r\n"
                               "Content-Length: "
                    + QByteArray::number(body.size()) + "\r\n\r\n" + body);
                visitor->disconnectFromHost();
            });
        });
    }
    QString address() const { return u"http://127.0.0.1:%1/waiting"_s.arg(serverPort()); }
};

class Browser : public XScene {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable(u"chromium"_s).isEmpty())
            GTEST_SKIP() << "chromium is not installed";
        XScene::SetUp();
        startProgram();
    }

    void browse(const QStringList &more)
    {
        browser.start(u"chromium"_s,
            QStringList{u"--no-sandbox"_s, u"--no-first-run"_s, u"--disable-gpu"_s, u"--disable-extensions"_s,
                u"--password-store=basic"_s, u"--user-data-dir="_s + folder.filePath(u"profile"_s),
                u"--window-position=0,0"_s, u"--window-size=900,700"_s}
                + more + QStringList{page.address()});
        const auto isShown = [&] {
            const auto now = front.current();
            return now && now->windowTitle.value_or(QString()).startsWith(u"On waiting"_s);
        };
        ASSERT_TRUE(QTest::qWaitFor(isShown, 30'000)) << browser.process().readAll().toStdString();
        QTest::qWait(1000); // painted
    }

    /// What a word looked up in the page and saved remembers of it.
    Example saved()
    {
        doubleClick({100, 420});
        press(u"保存"_s);
        EXPECT_TRUE(QTest::qWaitFor([&] { return notebook().size() == 1; }, 3000));
        return notebook().value(0).examples.value(0);
    }

    XConnection x;
    XFrontApplication front{x};
    Page page;
    Running browser;
};

TEST_F(Browser, APageIsKnownByItsAddressWhereItsTreeIsOn)
{
    browse({u"--force-renderer-accessibility"_s});
    const Example example = saved();
    EXPECT_EQ(example.sentence.toStdString(), "Reluctant readers wait.");
    EXPECT_EQ(example.sourceURL, page.address());
    EXPECT_THAT(example.sourceTitle.value_or(QString()).toStdString(), testing::StartsWith("On waiting"));
    EXPECT_TRUE(says(u"127.0.0.1"_s) || (press(u"更多"_s), says(u"127.0.0.1"_s)));
}

TEST_F(Browser, APageIsKnownByItsTitleAloneWhereItsTreeIsOff)
{
    browse({});
    const Example example = saved();
    EXPECT_EQ(example.sourceURL, std::nullopt);
    EXPECT_THAT(example.sourceTitle.value_or(QString()).toStdString(), testing::StartsWith("On waiting"));
}

} // namespace
