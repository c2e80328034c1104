// From the start of the program to its status item, with the menu behind it, and what it then holds in
// memory, beside a well-known dictionary for the desktop. Runs inside a desktop session of its own;
// tools/start-cost starts it so.

#include "XScene.h"
#include "platform/linux/desktop/StatusHost.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <thread>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr double timeGoal = 0.25;
constexpr double memoryGoal = 0.40;
constexpr qint64 patienceMs = 30'000;
constexpr int settlingMs = 3000; // what goes on behind the first picture is done by then
constexpr std::chrono::microseconds pollingInterval{500};

int rounds = 9;

struct Cost {
    double readyMs = 0;
    double residentMB = 0;
    double proportionalMB = 0; ///< with shared pages divided among those who share them
};

double median(const QList<Cost> &costs, double Cost::*figure)
{
    QList<double> values;
    for (const Cost &cost : costs)
        values.append(cost.*figure);
    std::ranges::sort(values);
    return values.value(values.size() / 2);
}

Cost memoryOf(qint64 process)
{
    Cost cost;
    QFile file(u"/proc/%1/smaps_rollup"_s.arg(process));
    EXPECT_TRUE(file.open(QFile::ReadOnly)) << "the kernel tells no figures of this process";
    for (const QByteArray &line : file.readAll().split('\n')) {
        const double megabytes = line.simplified().split(' ').value(1).toDouble() / 1024;
        if (line.startsWith("Rss:"))
            cost.residentMB = megabytes;
        if (line.startsWith("Pss:"))
            cost.proportionalMB = megabytes;
    }
    return cost;
}

class StartCost : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        ASSERT_TRUE(host.come());
    }
    void TearDown() override { }

    /// Whether the window manager manages a window.
    bool isWindowShown() { return !user.x.values(user.x.root(), user.x.atom("_NET_CLIENT_LIST")).empty(); }
    /// What a bar asks for before it can show the item: its picture and texts, and its menu.
    bool answersTheBar()
    {
        const auto answers = [this](const QString &object, const QString &interface, const QString &method,
                                 const QVariantList &arguments) {
            auto question = QDBusMessage::createMethodCall(host.item(), object, interface, method);
            question.setArguments(arguments);
            return QDBusConnection::sessionBus().call(question).type() == QDBusMessage::ReplyMessage;
        };
        return answers(u"/StatusNotifierItem"_s, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s,
                   {u"org.kde.StatusNotifierItem"_s})
            && answers(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, u"GetLayout"_s, {0, -1, QStringList()});
    }

    Cost costOf(const QString &name, const std::function<bool()> &isReady)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return !isWindowShown(); }, patienceMs));
        host.forgetItem();
        Running started;
        QElapsedTimer time;
        time.start();
        started.start(name, {}, {{u"NIMBRELLE_DATA_DIR"_s, folder.path()}});
        while (!isReady() && time.elapsed() < patienceMs) {
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(pollingInterval); // the program needs the processor too
        }
        const double ms = static_cast<double>(time.nsecsElapsed()) / 1e6;
        EXPECT_LT(ms, patienceMs) << name.toStdString() << " never came";
        QTest::qWait(settlingMs);
        Cost cost = memoryOf(started.id());
        cost.readyMs = ms;
        return cost;
    }

    Cost ours()
    {
        return costOf(
            QStringLiteral(NIMBRELLE_PROGRAM), [this] { return !host.item().isEmpty() && answersTheBar(); });
    }
    Cost other()
    {
        return costOf(u"goldendict"_s, [this] { return !host.item().isEmpty() || isWindowShown(); });
    }

    StatusHost host;
};

void print(const char *what, const QList<Cost> &ours, const QList<Cost> &others, double Cost::*figure,
    const char *unit, double goal)
{
    const double own = median(ours, figure);
    const double other = median(others, figure);
    std::printf("%-28s %7.1f %s   goldendict %7.1f %s   ratio %.3f   goal %.2f   %s\n", what, own, unit,
        other, unit, own / other, goal, own / other <= goal ? "reached" : "MISSED");
}

TEST_F(StartCost, BesideAnother)
{
    if (QStandardPaths::findExecutable(u"goldendict"_s).isEmpty())
        GTEST_SKIP() << "goldendict is not installed";
    ours(); // the first starts read everything from the disk, and make folders
    other();
    ASSERT_FALSE(HasFailure());
    QList<Cost> own, others;
    for (int i = 0; i < rounds; ++i) {
        own.append(ours());
        others.append(other());
    }
    std::printf("medians of %d alternating starts\n", rounds);
    print("start to the status item", own, others, &Cost::readyMs, "ms", timeGoal);
    print("resident memory", own, others, &Cost::residentMB, "MB", memoryGoal);
    print("its proportional share", own, others, &Cost::proportionalMB, "MB", memoryGoal);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1)
        rounds = std::max(1, std::atoi(argv[1]));
    return RUN_ALL_TESTS();
}
