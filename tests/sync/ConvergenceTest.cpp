#include "frame/AtomicFile.h"
#include "frame/RecordCodec.h"
#include "support/Printers.h"
#include "sync/BundleForm.h"
#include "sync/Content.h"
#include "sync/RandomLearner.h"
#include "sync/Seeds.h"
#include "sync/ServerProcess.h"

#include <QFile>

#include <array>
#include <ctime>
#include <gtest/gtest.h>
#include <map>

using namespace nimbrelle;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Several devices, each with its own wrong clock and time zone, learn at random and sync over a road that
// loses requests and answers, while processes are killed at any point. Whenever they get some quiet, and one
// of them a damaged file, all must come to one document, with nothing lost that nobody deleted.
namespace {

constexpr int stepsInASimulation = 250; // a fresh start now and then keeps logs, and so rounds, short
constexpr int stepsBetweenQuiet = 125;

class TimeZones {
public:
    TimeZones() : m_before(qgetenv("TZ")) { }
    ~TimeZones() { enter(m_before); }
    TimeZones(const TimeZones &) = delete;
    TimeZones &operator=(const TimeZones &) = delete;

    static void enter(const QByteArray &zone)
    {
        qputenv("TZ", zone);
        ::tzset();
    }

private:
    QByteArray m_before;
};

struct Member {
    std::unique_ptr<Device> device;
    QByteArray zone;
    std::chrono::seconds skew;
};

const std::array<QByteArray, 5> zones{"UTC-14", "UTC0", "UTC+11", "Asia/Shanghai", "Europe/London"};
const std::array<std::chrono::seconds, 5> skews{0s, 3s, -1800s, 90'000s, -86'400s};

SyncBundle withoutCounters(SyncBundle bundle)
{
    bundle.stats.reset();
    return bundle;
}

/// Passes requests on and keeps count, so that a run that met no trouble doesn't pass for a good one.
class CountingServer final : public AnsweringServer {
public:
    explicit CountingServer(std::unique_ptr<AnsweringServer> server) : m_server(std::move(server)) { }

    SyncResponse answer(const SyncRequest &request) override
    {
        SyncResponse response = m_server->answer(request);
        ++counts[response.status];
        return response;
    }

    std::map<int, int> counts; ///< by status

private:
    std::unique_ptr<AnsweringServer> m_server;
};

class Simulation {
public:
    Simulation(quint32 seed, AnsweringServer &server) : m_random(seed), m_server(server)
    {
        for (quint32 i = 0, count = 3 + m_random.below(3); i < count; ++i)
            m_members.push_back(
                {std::make_unique<Device>(seed * 10 + i), m_random.from(zones), m_random.from(skews)});
    }

    void run(int steps)
    {
        for (int i = 1; i <= steps && !testing::Test::HasFailure(); ++i) {
            step();
            if (i % stepsBetweenQuiet == 0)
                settle();
        }
    }

private:
    // The device whose turn it is, at its own place and time.
    Device &enter(const Member &member)
    {
        TimeZones::enter(member.zone);
        member.device->clock.set(m_now + member.skew);
        return *member.device;
    }

    Device &enterAny() { return enter(m_members[m_random.below(static_cast<quint32>(m_members.size()))]); }

    void step()
    {
        m_now += std::chrono::seconds{m_random.below(90)};
        Device &device = enterAny();
        const quint32 choice = m_random.below(100);
        if (choice < 50)
            learnAndNote(device);
        else if (choice < 68)
            device.startSync();
        else if (choice < 93)
            passMessage(device);
        else if (choice < 95)
            device.restart();
        else if (choice < 97)
            m_now += std::chrono::hours{m_random.below(20)};
        else
            m_members[m_random.below(static_cast<quint32>(m_members.size()))].skew = m_random.from(skews);
    }

    void learnAndNote(Device &device)
    {
        const QSet<QString> before = contentOf(device.document());
        learn(device, m_random.below(1'000'000));
        const QSet<QString> after = contentOf(device.document());
        m_made += after - before;
        m_removed += before - after;
    }

    // The request that this device waits for, with what can befall it.
    void passMessage(Device &device)
    {
        if (!device.network.isWaiting())
            return;
        const SyncRequest request = device.network.waiting();
        switch (m_random.below(12)) {
        case 0:
            device.network.lose();
            break;
        case 1:
            m_server.answer(request);
            device.network.lose();
            break;
        case 2:
            device.restart();
            break;
        case 3:
            m_server.answer(request);
            device.restart();
            break;
        case 4:
            killWhileWriting(device, m_server.answer(request));
            break;
        default:
            device.network.answer(m_server.answer(request));
        }
    }

    // Files are replaced one after the other, so a kill leaves the first of them new and the others old.
    void killWhileWriting(Device &device, const SyncResponse &response)
    {
        const AppPaths &paths = device.paths;
        const QStringList inOrder{paths.words, paths.notes, paths.grammar, paths.affixes, paths.deleted,
            paths.reviewStats, paths.log, paths.config, paths.syncKnown, paths.syncState};
        const qsizetype written = m_random.below(static_cast<quint32>(inOrder.size()));
        QList<std::optional<QByteArray>> before;
        for (const QString &path : inOrder)
            before.append(readFile(path));
        device.network.answer(response);
        device.restart();
        for (qsizetype i = written; i < inOrder.size(); ++i) {
            if (before[i])
                replaceFile(inOrder[i], *before[i]);
            else
                QFile::remove(inOrder[i]);
        }
        device.restart();
    }

    void settle()
    {
        for (const Member &member : m_members)
            enter(member).network.serve(m_server);
        quietRound();
        damageAFile();
        quietRound();
        quietRound();
        for (const Member &member : m_members)
            member.device->network.requests.clear();
        const SyncBundle agreed = withoutCounters(serverDocument());
        quietRound();
        EXPECT_EQ(BundleForm::hash(withoutCounters(serverDocument())), BundleForm::hash(agreed));
        for (const Member &member : m_members) {
            for (const SyncRequest &request : member.device->network.requests)
                EXPECT_EQ(request.method, SyncRequest::Method::get) << "written though all was quiet";
            const SyncBundle document = withoutCounters(BundleForm::normalized(member.device->document()));
            EXPECT_EQ(BundleForm::json(document), BundleForm::json(agreed));
        }
        expectNothingLost(agreed);
    }

    // Of a device that has given all it has to the server, which alone holds it for a while.
    void damageAFile()
    {
        Device &device = enterAny();
        const AppPaths &paths = device.paths;
        const QString path = m_random.from(
            QStringList{paths.words, paths.notes, paths.grammar, paths.affixes, paths.deleted, paths.log});
        const QByteArray bytes = readFile(path).value_or(QByteArray());
        replaceFile(path, bytes.first(m_random.below(static_cast<quint32>(bytes.size()) + 1)));
        device.restart();
        EXPECT_TRUE(device.syncWith(m_server));
        expectNothingLost(serverDocument());
    }

    void quietRound()
    {
        for (const Member &member : m_members) {
            Device &device = enter(member);
            EXPECT_TRUE(device.syncWith(m_server)) << device.sync().lastErrorDetail()->toStdString();
        }
    }

    SyncBundle serverDocument()
    {
        SyncRequest request;
        request.path = u"/v1/bundle"_s;
        return decode<SyncBundle>(m_server.answer(request).body).value_or(SyncBundle());
    }

    void expectNothingLost(const SyncBundle &agreed)
    {
        const QSet<QString> kept = contentOf(agreed);
        for (const QString &content : m_made - kept) {
            const bool isDeleted = m_removed.contains(content) || m_removed.contains(wordOf(content));
            EXPECT_TRUE(isDeleted) << "lost: " << content.toStdString();
        }
    }

    const TimeZones m_restoringZone;
    Random m_random;
    AnsweringServer &m_server;
    std::vector<Member> m_members;
    Timestamp m_now = *timestampFromIso(std::string_view{"2026-03-28T20:00:00Z"}); // a night of clock change
    QSet<QString> m_made; ///< by anybody, ever
    QSet<QString> m_removed;
};

template <class MakeServer> void runSimulations(int usualSteps, MakeServer makeServer)
{
    const int simulations = (Seeds::steps(usualSteps) + stepsInASimulation - 1) / stepsInASimulation;
    std::map<int, int> counts;
    for (quint32 i = 0; i < static_cast<quint32>(simulations) && !testing::Test::HasFailure(); ++i) {
        const quint32 seed = Seeds::first() + i;
        SCOPED_TRACE(std::string("to replay: ") + Seeds::variable + '=' + std::to_string(seed));
        CountingServer server(makeServer());
        Simulation(seed, server).run(stepsInASimulation);
        for (const auto &[status, count] : server.counts)
            counts[status] += count;
    }
    for (const int status : {200, 304, 404, 412})
        EXPECT_GT(counts[status], 0) << status;
}

TEST(Convergence, OfDevicesAtAServerInMemory)
{
    runSimulations(500, [] { return std::make_unique<MemoryServer>(); });
}

#ifdef NIMBRELLE_SERVER
TEST(Convergence, OfDevicesAtTheRealServer)
{
    runSimulations(2000, [] { return std::make_unique<ServerProcess>(QStringLiteral(NIMBRELLE_SERVER)); });
}
#endif

} // namespace
