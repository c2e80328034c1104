#include "frame/DayKey.h"
#include "frame/RecordCodec.h"
#include "notebook/Explanation.h"
#include "notebook/PageSource.h"
#include "support/Printers.h"
#include "support/TimeZone.h"
#include "sync/BundleForm.h"
#include "sync/Device.h"
#include "sync/Seeds.h"

#include <QDir>

#include <gtest/gtest.h>
#include <malloc.h>

#if __has_feature(address_sanitizer)
extern "C" std::size_t __sanitizer_get_current_allocated_bytes(); // GCC brings no header for it
#endif

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Some days of one learner on one device: what is counted stays true, all of it is on disk and at the server
// each evening, and nothing but the notebook and its diary grows. A whole month, which takes a minute:
//     NIMBRELLE_TEST_STEPS=30 sync_tests --gtest_filter='Days.*'
namespace {

constexpr int usualDays = 6;
constexpr int roundsInADay = 10;
constexpr int lookupsInARound = 17;
constexpr quint32 vocabulary = 90;

qsizetype allocatedBytes()
{
#if __has_feature(address_sanitizer)
    return static_cast<qsizetype>(__sanitizer_get_current_allocated_bytes());
#else
    return static_cast<qsizetype>(mallinfo2().uordblks);
#endif
}

qsizetype openFiles()
{
    return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

class Days : public testing::Test {
protected:
    // The frequent words of a language come again and again.
    Explanation meeting()
    {
        const quint32 number = std::min(m_random.below(vocabulary), m_random.below(vocabulary));
        Explanation explanation;
        explanation.headword = u"word%1"_s.arg(number);
        explanation.meaningZh = u"意思 %1"_s.arg(number);
        explanation.sentence = u"Sentence %1 of word%2."_s.arg(m_random.below(4)).arg(number);
        explanation.formKind = m_random.oneIn(3) ? u"plural"_s : u"base"_s;
        return explanation;
    }

    void lookUp()
    {
        const Explanation explanation = meeting();
        const PageSource page{.app = u"Browser"_s,
            .url = u"https://%1.example.org/"_s.arg(m_random.below(8)),
            .title = u"Page %1"_s.arg(m_random.below(20))};
        if (device.store().findHeadword(explanation.headword))
            device.store().recordLookup(explanation, page);
        else if (m_random.oneIn(3))
            device.store().save(explanation, page);
        ++lookups;
    }

    void review()
    {
        const QList<QUuid> round = device.store().buildSession(m_random.oneIn(2) ? 3 : 0);
        for (const QUuid &id : round) {
            const auto rating = m_random.oneIn(2) ? Rating::again : Rating::good;
            device.store().applyReview(id, rating, LogKind::review);
            device.clock.advance(20s);
            ++m_answersOf[DayKey::string(device.clock.now())];
            ++answers;
        }
    }

    void liveADay()
    {
        for (int round = 0; round < roundsInADay; ++round) {
            for (int i = 0; i < lookupsInARound; ++i) {
                lookUp();
                device.clock.advance(30s);
            }
            review();
            ASSERT_TRUE(device.syncWith(server)) << device.sync().lastErrorDetail()->toStdString();
            ++syncs;
            device.clock.advance(45min);
        }
        expectConsistent();
        device.clock.advance(11h);
    }

    void expectConsistent()
    {
        ASSERT_TRUE(device.syncWith(server));
        const QByteArray document = BundleForm::json(BundleForm::normalized(device.document()));
        EXPECT_EQ(BundleForm::json(BundleForm::normalized(*decode<SyncBundle>(server.document))), document);
        const ReviewStats stats = device.store().stats();
        EXPECT_EQ(stats.reviewed, m_answersOf.value(stats.day)) << stats.day.toStdString();
        const QStringList lines = device.log().readLines();
        EXPECT_EQ(
            std::ranges::count_if(lines, [](const QString &line) { return line.contains(u"\"review\""); }),
            answers);
        const Timestamp now = device.clock.now();
        for (const WordEntry &word : device.store().entries()) {
            EXPECT_LE(word.createdAt, now + 3h);
            if (word.review) {
                EXPECT_GT(word.review->due, word.review->lastReview);
                EXPECT_LT(word.review->due, now + 24h * 3650);
            }
        }
        device.restart();
        EXPECT_EQ(BundleForm::json(BundleForm::normalized(device.document())), document)
            << "it was all on disk";
    }

    Device device;
    MemoryServer server;
    int lookups = 0, answers = 0, syncs = 0;

private:
    Random m_random{Seeds::first()};
    QMap<QString, qint64> m_answersOf; ///< by local day
};

TEST_F(Days, LeavesNothingInconsistentAndNothingBehind)
{
    std::optional<TimeZone> zone(std::in_place, "Asia/Shanghai");
    const int days = Seeds::steps(usualDays);
    qsizetype settled = 0, files = 0, document = 0;
    for (int day = 0; day < days && !HasFatalFailure(); ++day) {
        if (day == days / 3)
            zone.emplace("America/New_York");
        if (day == days * 2 / 3)
            device.clock.set(device.clock.now() - 2h);
        liveADay();
        if (day == days / 2) { // every word has been met by now
            device.network.requests.clear();
            settled = allocatedBytes();
            files = openFiles();
            document = server.document.size();
        }
    }
    device.network.requests.clear();
    // What the diary gained is held as text by store, server and service.
    const qsizetype gained = server.document.size() - document;
    EXPECT_LT(allocatedBytes() - settled, 4 * gained + 512 * 1024);
    EXPECT_EQ(openFiles(), files);
    EXPECT_EQ(device.clock.pending(), 0);
    EXPECT_GE(lookups, 166 * days);
    EXPECT_GE(answers, 33 * days);
    EXPECT_EQ(syncs, 10 * days);
}

} // namespace
