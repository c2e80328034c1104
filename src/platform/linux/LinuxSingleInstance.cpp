#include "platform/linux/LinuxSingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace nimbrelle {

using namespace std::chrono_literals;

namespace {

// Paths of sockets must be short, and those of data directories need not be.
QString socketName(const QString &dataDirectory)
{
    const QString path = QFileInfo(dataDirectory).canonicalFilePath();
    const QByteArray hash = QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha256);
    return QStringLiteral("/nimbrelle-%1.socket").arg(QString::fromLatin1(hash.toHex().first(16)));
}

} // namespace

LinuxSingleInstance::LinuxSingleInstance(const QString &dataDirectory, const QString &runtimeDirectory)
    : m_lockPath(dataDirectory + QStringLiteral("/.instance.lock"))
    , m_socketPath(runtimeDirectory + socketName(dataDirectory))
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            caller->deleteLater(); // coming is all that it has to say
            emit reopened();
        }
    });
}

LinuxSingleInstance::LinuxSingleInstance(const QString &dataDirectory)
    : LinuxSingleInstance(dataDirectory, QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))
{
}

LinuxSingleInstance::~LinuxSingleInstance()
{
    m_server.close();
    if (m_lock >= 0)
        ::close(m_lock);
}

bool LinuxSingleInstance::claim()
{
    if (!takeLock()) {
        tellOther();
        return false;
    }
    QLocalServer::removeServer(m_socketPath); // what a killed process left; the lock says that it is nobody's
    m_server.listen(m_socketPath);
    return true;
}

// False only when another process surely holds it: a directory that can't be locked must not keep the program
// from starting.
bool LinuxSingleInstance::takeLock()
{
    m_lock = ::open(QFile::encodeName(m_lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

// The other one may have started a moment ago and not listen yet.
void LinuxSingleInstance::tellOther() const
{
    const QDeadlineTimer deadline(2s);
    do {
        QLocalSocket socket;
        socket.connectToServer(m_socketPath);
        if (socket.waitForConnected(500))
            return;
        QThread::msleep(50);
    } while (!deadline.hasExpired());
}

} // namespace nimbrelle
