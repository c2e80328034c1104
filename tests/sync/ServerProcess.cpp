#include "sync/ServerProcess.h"

#include "sync/PinnedTransport.h"

#include <QCoro/QCoroTask>
#include <QRegularExpression>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr int patience = 120'000; // milliseconds: a long run shares a busy machine with builds

QCoro::Task<SyncResponse> exchanged(SyncTransport *transport, SyncRequest request)
{
    co_return co_await transport->send(std::move(request), {});
}

} // namespace

ServerProcess::ServerProcess(const QString &program)
{
    init(program);
    serve(program);
    m_transport = PinnedTransport::open(m_link);
}

ServerProcess::~ServerProcess()
{
    m_transport.reset();
    m_process.terminate();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
}

QStringList ServerProcess::arguments(const QStringList &command) const
{
    return QStringList{u"--data"_s, m_directory.filePath(u"server"_s)} + command;
}

void ServerProcess::init(const QString &program)
{
    QProcess setup;
    setup.start(program, arguments({u"init"_s, u"--url"_s, u"https://127.0.0.1:1"_s, u"--no-qr"_s}));
    setup.waitForFinished(patience);
    const auto link = SyncLink::fromText(QString::fromUtf8(setup.readAllStandardOutput()));
    if (!link)
        throw std::runtime_error("no sync code: " + setup.errorString().toStdString() + "; "
            + setup.readAllStandardError().toStdString());
    m_link = *link;
}

void ServerProcess::serve(const QString &program)
{
    m_process.setStandardOutputFile(QProcess::nullDevice());
    m_process.start(program, arguments({u"serve"_s, u"--bind"_s, u"127.0.0.1"_s, u"--port"_s, u"0"_s}));
    QString said;
    static const QRegularExpression listening(u" port (\\d+)"_s);
    QRegularExpressionMatch match;
    while (!(match = listening.match(said)).hasMatch()) {
        m_process.setReadChannel(QProcess::StandardError);
        if (!m_process.waitForReadyRead(patience))
            throw std::runtime_error("the server does not listen: " + said.toStdString());
        said += QString::fromUtf8(m_process.readAllStandardError());
    }
    m_link.server = u"https://127.0.0.1:"_s + match.captured(1);
}

SyncResponse ServerProcess::answer(const SyncRequest &request)
{
    return QCoro::waitFor(exchanged(m_transport.get(), request));
}

} // namespace nimbrelle
