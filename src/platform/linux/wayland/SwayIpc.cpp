#include "platform/linux/wayland/SwayIpc.h"

#include <QCoro/QCoroSignal>

#include <cstring>

namespace nimbrelle {
namespace {

constexpr char magic[] = {'i', '3', '-', 'i', 'p', 'c'};
constexpr qsizetype headSize = sizeof magic + 2 * sizeof(quint32);
constexpr quint32 eventBit = 1U << 31U;
constexpr quint32 largest = 64U << 20U; // no tree of windows is so large
constexpr std::chrono::milliseconds patience{300};

QByteArray messageOf(quint32 kind, const QByteArray &text)
{
    QByteArray message(magic, sizeof magic);
    const auto size = static_cast<quint32>(text.size());
    message.append(reinterpret_cast<const char *>(&size), sizeof size); // in the machine's byte order
    message.append(reinterpret_cast<const char *>(&kind), sizeof kind);
    return message + text;
}

} // namespace

class SwayIpc::Answer final : public QObject {
    Q_OBJECT

public:
    std::optional<QJsonDocument> document;

signals:
    void arrived();
};

SwayIpc::SwayIpc(const QString &path)
{
    connect(&m_socket, &QLocalSocket::readyRead, this, &SwayIpc::read);
    connect(&m_socket, &QLocalSocket::disconnected, this, &SwayIpc::end);
    connect(&m_socket, &QLocalSocket::errorOccurred, this, &SwayIpc::end);
    connect(
        &m_socket, &QLocalSocket::connected, this, [this] { m_socket.write(std::exchange(m_unsent, {})); });
    m_socket.connectToServer(path);
}

SwayIpc::~SwayIpc()
{
    m_socket.disconnect(this);
    giveUp();
}

QCoro::Task<std::optional<QJsonDocument>> SwayIpc::ask(Question question, QByteArray text)
{
    if (m_isEnded)
        co_return std::nullopt;
    const QByteArray message = messageOf(static_cast<quint32>(question), text);
    if (m_socket.state() == QLocalSocket::ConnectedState)
        m_socket.write(message);
    else
        m_unsent += message;
    // Of no parent: it outlives this object where its end is what wakes the question.
    const auto answer = std::make_shared<Answer>();
    m_asked.push_back(answer);
    co_await qCoro(answer.get(), &Answer::arrived, patience);
    co_return answer->document;
}

void SwayIpc::read()
{
    m_received += m_socket.readAll();
    while (m_received.size() >= headSize) {
        quint32 size = 0;
        quint32 kind = 0;
        std::memcpy(&size, m_received.constData() + sizeof magic, sizeof size);
        std::memcpy(&kind, m_received.constData() + sizeof magic + sizeof size, sizeof kind);
        if (!m_received.startsWith(QByteArrayView(magic, sizeof magic)) || size > largest) {
            m_socket.abort();
            end();
            return;
        }
        if (m_received.size() < headSize + qsizetype(size))
            return;
        const QJsonDocument document = QJsonDocument::fromJson(m_received.sliced(headSize, size));
        m_received.remove(0, headSize + qsizetype(size));
        if (kind & eventBit) {
            emit happened(kind & ~eventBit, document);
        } else if (!m_asked.empty()) {
            const std::shared_ptr<Answer> answer = m_asked.front();
            m_asked.pop_front();
            answer->document = document;
            emit answer->arrived();
        }
    }
}

void SwayIpc::end()
{
    if (std::exchange(m_isEnded, true))
        return;
    giveUp();
    emit closed();
}

void SwayIpc::giveUp()
{
    for (const std::shared_ptr<Answer> &answer : std::exchange(m_asked, {}))
        emit answer->arrived();
}

} // namespace nimbrelle

#include "SwayIpc.moc"
