// From the release of the mouse to the card on the screen, as the user sees it, and what the program costs
// while nothing happens. Runs inside a desktop session of its own; tools/card-latency starts it so.

#include "XScene.h"
#include "platform/linux/ocr/TesseractRecognizer.h"
#include "road/RoadTimes.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace nimbrelle;
using namespace Qt::StringLiterals;

namespace {

constexpr int idleSeconds = 30;

int gestures = 100;

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

    quint32 colourAt(QPoint at) const
    {
        const auto answer = user.x.reply(xcb_get_image_reply,
            xcb_get_image(user.x.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, user.x.root(), static_cast<qint16>(at.x()),
                static_cast<qint16>(at.y()), 1, 1, ~0U));
        quint32 pixel = 0;
        if (answer)
            std::memcpy(&pixel, xcb_get_image_data(answer.get()), sizeof pixel);
        return pixel;
    }

    QList<double> measured(const std::function<void()> &prepare, QPoint pixel)
    {
        const RoadTimes times{.hand = user,
            .colourAt = [this](QPoint at) { return colourAt(at); },
            .dismiss = [this] { user.tap(keysym::escape); },
            .gestures = gestures};
        return times.measured(prepare, pixel);
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
