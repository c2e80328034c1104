#include "Programs.h"

#include "frame/AppConfig.h"
#include "frame/RecordFile.h"
#include "sync/SyncLink.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace nimbrelle {

namespace {

constexpr int patienceMilliseconds = 30'000;

} // namespace

Ended run(const QString &program, const QStringList &arguments, const QStringList &environment)
{
    QProcess process;
    QProcessEnvironment variables;
    for (const QString &variable : environment)
        variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
    if (environment.isEmpty())
        variables.insert(u"EMPTY"_s, QString()); // an empty set would mean the tests' own
    process.setProcessEnvironment(variables);
    process.start(program, arguments);
    const bool ended =
        process.waitForFinished(patienceMilliseconds) && process.exitStatus() == QProcess::NormalExit;
    return {ended ? process.exitCode() : -1, QString::fromUtf8(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

RunningServer::RunningServer(const QString &program, const QStringList &arguments)
{
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    m_process.start(program, arguments);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(patienceMilliseconds)) { }
    m_firstLine = QString::fromUtf8(m_process.readLine()).trimmed();
}

RunningServer::~RunningServer()
{
    m_process.terminate();
    EXPECT_TRUE(m_process.waitForFinished(patienceMilliseconds));
    EXPECT_EQ(m_process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(m_process.exitCode(), 0);
}

SyncServer::SyncServer()
{
    const QString program = QStringLiteral(NIMBRELLE_SERVER);
    const QStringList data{u"--data"_s, m_folder.filePath(u"server"_s)};
    const Ended setup =
        run(program, data + QStringList{u"init"_s, u"--url"_s, u"https://127.0.0.1:1"_s, u"--no-qr"_s}, {});
    auto link = SyncLink::fromText(setup.output);
    m_running = std::make_unique<RunningServer>(
        program, data + QStringList{u"serve"_s, u"--bind"_s, u"127.0.0.1"_s, u"--port"_s, u"0"_s});
    static const QRegularExpression sayingPort(u" port (\\d+)"_s);
    const auto port = sayingPort.match(m_running->firstLine());
    EXPECT_TRUE(link && port.hasMatch()) << m_running->firstLine().toStdString();
    if (link)
        link->server = u"https://127.0.0.1:"_s + port.captured(1);
    m_code = link.value_or(SyncLink()).text();
}

Ended Device::operator()(const QStringList &arguments, const QStringList &environment) const
{
    return run(QStringLiteral(NIMBRELLE_PROGRAM), arguments,
        QStringList{u"NIMBRELLE_DATA_DIR="_s + m_directory.path()} + environment);
}

void Device::useProvider(const QString &address, const QString &key) const
{
    AppConfig config;
    config.baseURL = address;
    config.apiKey = key;
    writeRecordFile(path(u"config.json"_s), config, FileMode::ownerOnly);
}

} // namespace nimbrelle
