// From the release of the mouse to the card on the screen, as the user sees it, and what the program costs
// while nothing happens. Runs inside a desktop session of its own; tools/card-latency starts it so.

#include "XScene.h"
#include "platform/linux/ocr/TesseractRecognizer.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>
#include <QStyleHints>

#include <algorithm>
#include <cstdio>
#include <thread>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr double ruleWaitMs = 80; // a selection gets this long to settle before it is read
constexpr quint32 cardColour = 0xFDFBF6;
constexpr QPoint insideCard{-16, 18 + 12}; // from the pointer, in pixels
constexpr QPoint insideOffer{-9, 18 + 4};
constexpr int patienceMs = 5000;
constexpr std::chrono::microseconds pollingInterval{500};
constexpr int idleSeconds = 30;

int gestures = 100;

double share(QList<double> values, double part)
{
    std::ranges::sort(values);
    return values[std::min(
        values.size() - 1, static_cast<qsizetype>(part * static_cast<double>(values.size())))];
}

void print(const char *road, const QList<double> &times, double waited)
{
    if (times.isEmpty())
        return;
    std::printf("%-34s %4d gestures   median %6.1f   p95 %6.1f   max %6.1f ms beyond the wait\n", road,
        static_cast<int>(times.size()), share(times, 0.5) - waited, share(times, 0.95) - waited,
        share(times, 1) - waited);
    std::fflush(stdout);
}

/// Tells no screen reader what is marked in it, but offers it as the primary selection.
class Silent : public QWidget {
public:
    QString marked;

protected:
    void mousePressEvent(QMouseEvent *) override
    {
        QGuiApplication::clipboard()->setText(marked, QClipboard::Selection);
    }
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        painter.setFont(QFont(u"DejaVu Sans"_s, 13));
        painter.drawText(QPoint(20, 60), u"I was reluctant to post this, but here we go."_s);
    }
};

class CardLatency : public XScene {
protected:
    void SetUp() override
    {
        XScene::SetUp();
        AppConfig config = practiceConfig();
        config.dwellLookup = false; // the pointer rests where the last gesture ended
        writeConfig(config);
        startProgram();
    }
    void TearDown() override { }

    QList<double> recognitionTimes(QPoint at) const;

    bool isPainted(QPoint at) const
    {
        const auto answer = user.x.reply(xcb_get_image_reply,
            xcb_get_image(user.x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, user.x.root(), static_cast<qint16>(at.x()),
                static_cast<qint16>(at.y()), 1, 1, ~0U));
        if (!answer)
            return false;
        quint32 pixel = 0;
        std::memcpy(&pixel, xcb_get_image_data(answer.get()), sizeof pixel);
        return (pixel & 0xFFFFFFU) == cardColour;
    }

    bool waitFor(QPoint pixel, bool painted) const
    {
        QElapsedTimer waited;
        waited.start();
        while (isPainted(pixel) != painted) {
            if (waited.elapsed() > patienceMs)
                return false;
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(pollingInterval); // the program needs the processor too
        }
        return true;
    }

    /// One gesture that ends with a release at the pointer; absent when no card came.
    template <typename Prepare> std::optional<double> timed(Prepare prepare, QPoint pixel)
    {
        prepare();
        QElapsedTimer time;
        user.button(1, false);
        time.start();
        const bool came = waitFor(pixel, true);
        const double ms = static_cast<double>(time.nsecsElapsed()) / 1e6;
        user.tap(keysym::escape);
        EXPECT_TRUE(waitFor(pixel, false));
        QTest::qWait(QGuiApplication::styleHints()->mouseDoubleClickInterval() + 50);
        EXPECT_TRUE(came);
        return came ? std::optional(ms) : std::nullopt;
    }

    template <typename Prepare> QList<double> measured(Prepare prepare, QPoint pixel)
    {
        QList<double> times;
        for (int i = -2; i < gestures; ++i) { // the first two warm everything up
            const auto time = timed(prepare, pixel);
            if (time && i >= 0)
                times.append(*time);
        }
        return times;
    }
};

/// What the recognizer takes for a place, without anything round it.
QList<double> CardLatency::recognitionTimes(QPoint at) const
{
    constexpr QSize size(760, 200);
    const QRect area(at - QPoint(size.width() / 2, size.height() / 2), size);
    const QImage image = screenImage().copy(area).convertToFormat(QImage::Format_RGB32);
    TesseractRecognizer recognizer;
    QList<double> times;
    for (int i = -1; i < 20; ++i) {
        const Picture picture{size.width(), size.height(), 1,
            QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes())};
        QElapsedTimer time;
        time.start();
        QCoro::waitFor(recognizer.recognize(picture, RecognitionStyle::plain, {}));
        if (i >= 0)
            times.append(static_cast<double>(time.nsecsElapsed()) / 1e6);
    }
    return times;
}

TEST_F(CardLatency, ByAccessibility)
{
    openEditor(u"I was reluctant to post this, but here we go.\n"_s);
    const QPoint word = inEditor(u"reluctant"_s).center();
    print("a word, by accessibility",
        measured(
            [&] {
                click(word);
                user.button(1, true);
                QTest::qWait(20);
            },
            word + insideCard),
        ruleWaitMs);
}

TEST_F(CardLatency, ByThePrimarySelection)
{
    Silent window;
    window.setGeometry(300, 100, 640, 480);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const QPoint start = window.geometry().topLeft() + QPoint(60, 56);
    const auto drag = [&] {
        user.moveTo(start);
        QTest::qWait(20);
        user.button(1, true);
        QTest::qWait(20);
        user.moveTo(start + QPoint(40, 0));
        QTest::qWait(20);
    };
    window.marked = u"I was reluctant to post this, but here we go, and nobody minded in the end."_s;
    print("a passage, by primary selection", measured(drag, start + QPoint(40, 0) + insideOffer), ruleWaitMs);

    window.marked = u"reluctant"_s;
    const QList<double> times = measured(drag, start + QPoint(40, 0) + insideCard);
    const QList<double> readings = recognitionTimes(start + QPoint(40, 0));
    print("one warm recognition of that place", readings, 0);
    print("a word without context, with it", times, ruleWaitMs + share(readings, 0.5));
}

struct Cost {
    QMap<QString, qint64> wakeUps; ///< by thread
    double seconds = 0;
};

/// A thread that has ended in between takes its count along, and counts for nothing.
qint64 wakeUpsBetween(const Cost &before, const Cost &after)
{
    qint64 count = 0;
    for (auto each = after.wakeUps.begin(); each != after.wakeUps.end(); ++each)
        count += each.value() - before.wakeUps.value(each.key());
    return count;
}

Cost costOf(qint64 process)
{
    Cost cost;
    const QDir threads(u"/proc/%1/task"_s.arg(process));
    for (const QString &thread : threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile status(threads.filePath(thread + u"/status"_s));
        if (status.open(QFile::ReadOnly))
            for (const QByteArray &line : status.readAll().split('\n'))
                if (line.startsWith("voluntary_ctxt_switches:"))
                    cost.wakeUps[thread] = line.mid(line.indexOf(':') + 1).trimmed().toLongLong();
    }
    QFile stat(u"/proc/%1/stat"_s.arg(process));
    if (stat.open(QFile::ReadOnly)) {
        const QByteArray line = stat.readAll();
        const QByteArrayList fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        cost.seconds = static_cast<double>(fields.value(11).toLongLong() + fields.value(12).toLongLong())
            / static_cast<double>(sysconf(_SC_CLK_TCK));
    }
    return cost;
}

TEST_F(CardLatency, Idle)
{
    openEditor(u"I was reluctant to post this, but here we go.\n"_s);
    QTest::qWait(3000);
    const Cost before = costOf(program.id());
    QTest::qWait(idleSeconds * 1000);
    const Cost after = costOf(program.id());
    std::printf("idle with the pointer still            %lld wake-ups and %.3f %% of a core in %d s\n",
        static_cast<long long>(wakeUpsBetween(before, after)),
        100 * (after.seconds - before.seconds) / idleSeconds, idleSeconds);
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1)
        gestures = std::max(1, std::atoi(argv[1]));
    return RUN_ALL_TESTS();
}
