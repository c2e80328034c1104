#include "platform/linux/LinuxSingleInstance.h"

#include "frame/AtomicFile.h"
#include "platform/linux/commands/CommandReply.h"
#include "platform/linux/commands/CommandSession.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextStream>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

using namespace Qt::StringLiterals;

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

// Paths of sockets must be short, and those of data directories need not be.
QString socketName(const QString &dataDirectory)
{
    const QString path = QFileInfo(dataDirectory).canonicalFilePath();
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256);
    return u"/nimbrelle-%1.socket"_s.arg(QString::fromLatin1(hash.toHex().first(16)));
}

const QString &heldText()
{
    static const QString text = u"Nimbrelle 或它的另一个命令一直占着这个数据文件夹，所以什么也没有做。"_s;
    return text;
}

/// Tries again and again until `attempt` gives something, or the time is over.
template <class Attempt> auto insist(std::chrono::milliseconds patience, const Attempt &attempt)
{
    const QDeadlineTimer deadline(patience);
    auto result = attempt();
    while (!result && !deadline.hasExpired()) {
        QThread::msleep(20);
        result = attempt();
    }
    return result;
}

} // namespace

LinuxSingleInstance::Surroundings LinuxSingleInstance::Surroundings::ofSystem()
{
    return {.runtimeDirectory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation),
        .patience = {.forDirectory = 90s, .forGreeting = 10s, .forLifeSign = 30s}};
}

LinuxSingleInstance::LinuxSingleInstance(const QString &dataDirectory, Surroundings surroundings)
    : m_patience(surroundings.patience)
    , m_lockPath(dataDirectory + u"/.instance.lock"_s)
    , m_socketPaths{surroundings.runtimeDirectory + socketName(dataDirectory),
          dataDirectory + socketName(dataDirectory), QDir::tempPath() + socketName(dataDirectory)}
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection())
            meet(caller);
    });
}

LinuxSingleInstance::~LinuxSingleInstance()
{
    m_server.close();
    if (m_isHeld)
        announce({});
    releaseLock();
}

SingleInstance::Claim LinuxSingleInstance::claim(CommandRunner run)
{
    m_run = std::move(run);
    const auto claimed = insist(m_patience.forDirectory, [this]() -> std::optional<Claim> {
        if (takeLock())
            return Claim::ours;
        CommandCaller caller(m_patience);
        const bool isTold = caller.connectTo(announcedSocket()) && caller.send(reopening);
        return isTold ? std::optional(Claim::told) : std::nullopt;
    });
    if (!claimed)
        qWarning().noquote() << heldText();
    else if (*claimed == Claim::ours && !listen())
        qWarning().noquote() << u"再启动一次 Nimbrelle 时不会弹出设置窗口，命令也要等它退出："_s
                             << m_server.errorString();
    return claimed.value_or(Claim::refused);
}

std::optional<int> LinuxSingleInstance::claimOrGive(const GivenCommand &command, QTextStream &out)
{
    bool isOurs = false;
    const auto code = insist(m_patience.forDirectory, [&]() -> std::optional<int> {
        isOurs = takeLock();
        return isOurs ? std::optional(0) : give(command, out);
    });
    if (isOurs)
        return std::nullopt;
    if (!code)
        out << heldText() << Qt::endl;
    return code.value_or(1);
}

int LinuxSingleInstance::giveToProgram(
    const GivenCommand &command, const ProgramStart &start, QTextStream &out)
{
    std::function<bool()> isStarting;
    const auto code = insist(m_patience.forDirectory, [&]() -> std::optional<int> {
        if (const auto given = give(command, out))
            return given;
        if (!takeLock())
            return std::nullopt; // a command at work, or the program just begins
        releaseLock();
        if (!isStarting)
            isStarting = start();
        if (isStarting())
            return std::nullopt;
        out << u"Nimbrelle 没有启动起来，所以什么也没有做。"_s << Qt::endl;
        return 1;
    });
    if (!code)
        out << heldText() << Qt::endl;
    return code.value_or(1);
}

// Absent where nobody listens: that is a command at work, or a program that just starts or ends.
std::optional<int> LinuxSingleInstance::give(const GivenCommand &command, QTextStream &out) const
{
    CommandCaller caller(m_patience);
    if (!caller.connectTo(announcedSocket()))
        return std::nullopt;
    const auto greeting = caller.waitForGreeting();
    if (greeting == CommandCaller::Greeting::gone)
        return std::nullopt;
    if (greeting == CommandCaller::Greeting::silent) {
        out << u"Nimbrelle 正在运行，但没有回应，所以什么也没有做。"_s << Qt::endl;
        return 1;
    }
    const auto code = caller.give(command, out);
    if (!code)
        out << u"正在运行的 Nimbrelle 没有答完；做到了哪一步，要在 Nimbrelle 里看。"_s << Qt::endl;
    return code.value_or(1);
}

// False only when another process surely holds it: a directory that can't be locked must not keep the program
// from starting.
bool LinuxSingleInstance::takeLock()
{
    if (m_lock < 0)
        m_lock = ::open(QFile::encodeName(m_lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    m_isHeld = m_lock >= 0 && ::flock(m_lock, LOCK_EX | LOCK_NB) == 0;
    if (m_isHeld)
        announce({}); // what a killed process left
    return m_isHeld || m_lock < 0 || errno != EWOULDBLOCK;
}

void LinuxSingleInstance::releaseLock()
{
    if (m_lock >= 0)
        ::close(std::exchange(m_lock, -1));
    m_isHeld = false;
}

bool LinuxSingleInstance::listen()
{
    const auto path = std::ranges::find_if(m_socketPaths, [this](const QString &candidate) {
        QLocalServer::removeServer(candidate); // the lock says that it is nobody's
        return m_server.listen(candidate);
    });
    if (path == m_socketPaths.end())
        return false;
    announce(m_server.fullServerName());
    return true;
}

void LinuxSingleInstance::meet(QLocalSocket *caller)
{
    if (!isOwnUser(*caller)) {
        caller->deleteLater();
        return;
    }
    auto *session = new CommandSession(caller, m_run, this);
    connect(session, &CommandSession::reopened, this, &SingleInstance::reopened);
}

void LinuxSingleInstance::announce(const QString &socketPath) const
{
    const QByteArray path = QFile::encodeName(socketPath);
    if (m_isHeld && ::ftruncate(m_lock, 0) == 0 && !path.isEmpty())
        (void)!::pwrite(m_lock, path.constData(), static_cast<std::size_t>(path.size()), 0);
}

QString LinuxSingleInstance::announcedSocket() const
{
    return QFile::decodeName(readFile(m_lockPath).value_or(QByteArray()));
}

} // namespace nimbrelle
