#pragma once

#include "platform/linux/LinuxPlatform.h"
#include "support/OtherXClient.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace nimbrelle {

/// The events that the monitor emitted, in words, in order.
class InputRecorder : public QObject {
public:
    explicit InputRecorder(const InputMonitor &monitor)
    {
        connect(&monitor, &InputMonitor::mousePressed, this,
            [this](QPointF, int count) { note(QStringLiteral("press %1").arg(count)); });
        connect(&monitor, &InputMonitor::mouseReleased, this,
            [this](QPointF, int count) { note(QStringLiteral("release %1").arg(count)); });
        connect(&monitor, &InputMonitor::modifiersChanged, this,
            [this](ModifierFlags held) { note(QStringLiteral("held %1").arg(held, 0, 16)); });
        connect(&monitor, &InputMonitor::mouseMoved, this, [this] { note(QStringLiteral("move")); });
        connect(&monitor, &InputMonitor::mouseDragged, this, [this] { note(QStringLiteral("drag")); });
        connect(&monitor, &InputMonitor::keyPressed, this,
            [this](Key key) { note(key == Key::escape ? QStringLiteral("escape") : QStringLiteral("key")); });
        connect(&monitor, &InputMonitor::scrolled, this, [this] { note(QStringLiteral("scroll")); });
    }

    /// The words so far, moves and drags left out; and forgets them.
    QString take()
    {
        QTest::qWait(60);
        QStringList words = std::exchange(m_words, {});
        words.removeIf([](const QString &word) {
            return word == QStringLiteral("move") || word == QStringLiteral("drag");
        });
        return words.join(QStringLiteral(", "));
    }
    qsizetype takeMoves(const QString &kind = QStringLiteral("move"))
    {
        QTest::qWait(60);
        return std::exchange(m_words, {}).count(kind);
    }

private:
    void note(const QString &word) { m_words.append(word); }

    QStringList m_words;
};

/// A private session with the platform in it, another client of its X server, and programs that the tests
/// start.
class Desktop : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QTest::qWaitFor([&] {
            return !platform.desktop.x
                        .values(
                            platform.desktop.x.root(), platform.desktop.x.atom("_NET_SUPPORTING_WM_CHECK"))
                        .empty();
        })) << "no window manager";
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return platform.accessibility.bus() == AtSpiReader::Bus::connected; }, 10000));
        platform.desktop.input.start();
        awaitServer(); // which then knows what we subscribed to
    }

    /// A round trip: the server has done what we asked of it, before it does what another client asks.
    void awaitServer() const { platform.desktop.pointer.location(); }

    /// Starts an editor on `text` and waits until its window is active and painted.
    bool open(const QString &program, const QString &text, const QStringList &arguments = {})
    {
        const QString path = folder.filePath(QStringLiteral("reading.txt"));
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(text.toUtf8()) < 0)
            return false;
        file.close();
        process.start(program, arguments + QStringList{path});
        return process.waitForStarted()
            && QTest::qWaitFor(
                [&] {
                    const auto front = platform.desktop.frontApplication.current();
                    return front
                        && front->windowTitle.value_or(QString()).contains(QStringLiteral("reading"));
                },
                20000);
    }

    /// In pixels, without its frame.
    QRect frontWindow()
    {
        const auto window = static_cast<xcb_window_t>(
            platform.desktop.frontApplication.current().value_or(Application()).window);
        const auto size = platform.desktop.x.reply(
            xcb_get_geometry_reply, xcb_get_geometry(platform.desktop.x.get(), window));
        const auto place = platform.desktop.x.reply(xcb_translate_coordinates_reply,
            xcb_translate_coordinates(platform.desktop.x.get(), window, platform.desktop.x.root(), 0, 0));
        return size && place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
    }

    void TearDown() override
    {
        if (process.state() == QProcess::NotRunning)
            return;
        process.kill();
        process.waitForFinished();
    }

    template <typename T> static T finished(QCoro::Task<T> task) { return QCoro::waitFor(std::move(task)); }

    LinuxPlatform platform;
    OtherXClient otherClient;
    InputRecorder recorder{platform.desktop.input};
    QTemporaryDir folder;
    QProcess process;
};

} // namespace nimbrelle
