#include "platform/linux/LinuxSingleInstance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

} // namespace

LinuxSingleInstance::LinuxSingleInstance(const QString &dataDirectory, const QString &runtimeDirectory)
    : m_lockPath(dataDirectory + u"/.instance.lock"_s)
    , m_socketPaths{runtimeDirectory + socketName(dataDirectory), dataDirectory + socketName(dataDirectory),
          QDir::tempPath() + socketName(dataDirectory)}
{
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    connect(&m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket *caller = m_server.nextPendingConnection()) {
            caller->deleteLater(); // a connection alone is the request
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
        if (!notifyRunningInstance())
            qWarning().noquote() << u"Nimbrelle 已经在运行，但它没有回应。"_s;
        return false;
    }
    if (!listen())
        qWarning().noquote() << u"再启动一次 Nimbrelle 时不会弹出设置窗口："_s << m_server.errorString();
    return true;
}

// False only when another process surely holds it: a directory that can't be locked must not keep the program
// from starting.
bool LinuxSingleInstance::takeLock()
{
    m_lock = ::open(QFile::encodeName(m_lockPath).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    return m_lock < 0 || ::flock(m_lock, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

bool LinuxSingleInstance::listen()
{
    return std::ranges::any_of(m_socketPaths, [this](const QString &path) {
        QLocalServer::removeServer(path); // what a killed process left; the lock says that it is nobody's
        return m_server.listen(path);
    });
}

// The other one may have started a moment ago and not listen yet.
bool LinuxSingleInstance::notifyRunningInstance() const
{
    const QDeadlineTimer deadline(2s);
    do {
        for (const QString &path : m_socketPaths) {
            QLocalSocket socket;
            socket.connectToServer(path);
            if (socket.waitForConnected(500))
                return true;
        }
        QThread::msleep(50);
    } while (!deadline.hasExpired());
    return false;
}

} // namespace nimbrelle
