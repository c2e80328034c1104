// How far behind the loading card the first byte of a look-up leaves, where the provider is a round trip of
// 100 ms away: on a connection that is begun with the exchange, and on one that was begun with the gesture,
// 250 ms before. And what a connection of its own costs an exchange.

#include "DelayingRelay.h"
#include "Ratios.h"
#include "ai/DeepSeekClient.h"
#include "ai/ProviderConnections.h"
#include "frame/Clock.h"
#include "support/TestCertificates.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTimer>

using namespace nimbrelle;
using namespace nimbrelle::bench;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using SteadyTime = std::chrono::steady_clock::time_point;

constexpr auto oneWay = 50ms;
constexpr auto gesture = 250ms;
constexpr auto budget = 10ms;

/// An HTTPS server that gives each request the same answer, and notes when its parts came.
class Provider {
public:
    Provider()
    {
        const QSslCertificate certificate{QByteArray(TestCertificates::validCertificate)};
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.addCaCertificate(certificate);
        QSslConfiguration::setDefaultConfiguration(configuration);
        configuration.setLocalCertificate(certificate);
        configuration.setPrivateKey(QSslKey(QByteArray(TestCertificates::validKey), QSsl::Ec));
        m_listener.setSslConfiguration(configuration);
        QObject::connect(&m_listener, &QTcpServer::pendingConnectionAvailable, &m_listener, [this] {
            while (QTcpSocket *socket = m_listener.nextPendingConnection())
                serve(socket);
        });
        if (!m_listener.listen(QHostAddress::LocalHost))
            qFatal("no loopback port to listen on");
    }

    quint16 port() const { return m_listener.serverPort(); }

    SteadyTime firstByte; ///< of the last request

private:
    void serve(QTcpSocket *socket)
    {
        QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        const auto request = std::make_shared<QByteArray>();
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket, request] {
            if (request->isEmpty())
                firstByte = std::chrono::steady_clock::now();
            *request += socket->readAll();
            if (request->endsWith('}'))
                answer(*socket);
        });
    }
    static void answer(QTcpSocket &socket)
    {
        const QByteArray body =
            R"({"choices":[{"message":{"content":"{\"headword\":\"run\",\"meaning_zh\":\"跑\"}"}}]})";
        socket.write(
            "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
    }

    QSslServer m_listener;
};

struct Stage {
    void use(quint16 port)
    {
        config.apiKey = u"sk-1"_s;
        config.baseURL = u"https://127.0.0.1:%1"_s.arg(port);
        explain(); // the first of a run is not prepared for
    }
    DeepSeekClient client() { return {config, connections}; }
    void explain() { QCoro::waitFor(client().explain(u"ran"_s, u"He ran to the station."_s)); }
    /// Explains; how far behind its beginning the first byte left.
    std::chrono::duration<double> measure()
    {
        const SteadyTime begun = std::chrono::steady_clock::now();
        explain();
        return provider.firstByte - begun - oneWay;
    }

    Provider provider;
    ProviderConnections connections{SystemClock::shared()};
    AppConfig config;
};

struct FarStage : Stage {
    FarStage() { use(relay.port()); }

    DelayingRelay relay{provider.port(), oneWay};
};

void wait(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void cold(benchmark::State &state)
{
    FarStage stage;
    for (auto _ : state)
        state.SetIterationTime(stage.measure().count());
}

void prepared(benchmark::State &state)
{
    FarStage stage;
    for (auto _ : state) {
        stage.client().prepare();
        wait(gesture);
        state.SetIterationTime(stage.measure().count());
    }
}

void tenMilliseconds(benchmark::State &state)
{
    for (auto _ : state)
        state.SetIterationTime(std::chrono::duration<double>(budget).count());
}

double entriesOf(const QString &directory)
{
    return static_cast<double>(QDir(directory).entryList(QDir::AllEntries | QDir::System).size());
}

double residentKilobytes()
{
    QFile file(u"/proc/self/statm"_s);
    return file.open(QFile::ReadOnly) ? file.readAll().split(' ').value(1).toDouble() * 4 : 0;
}

// A whole exchange on loopback, both ends of it.
void exchange(benchmark::State &state)
{
    Stage stage;
    stage.use(stage.provider.port());
    for (int i = 0; i < 50; ++i)
        stage.explain();
    wait(gesture);
    const double kilobytes = residentKilobytes();
    const double threads = entriesOf(u"/proc/self/task"_s);
    const double descriptors = entriesOf(u"/proc/self/fd"_s);
    for (auto _ : state)
        stage.explain();
    wait(gesture);
    state.counters["kB more"] = residentKilobytes() - kilobytes;
    state.counters["threads more"] = entriesOf(u"/proc/self/task"_s) - threads;
    state.counters["descriptors more"] = entriesOf(u"/proc/self/fd"_s) - descriptors;
}

BENCHMARK(cold)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(prepared)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond)->Repetitions(3);
BENCHMARK(tenMilliseconds)->Iterations(1)->UseManualTime()->Name("10 ms")->Unit(benchmark::kMillisecond);
BENCHMARK(exchange)->Iterations(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return runWithRatios(argc, argv,
        {
            {"first byte behind the card, begun with the gesture / 10 ms",
                "prepared/iterations:20/repeats:3/manual_time", {"10 ms/iterations:1/manual_time"}, 1.0},
        });
}
