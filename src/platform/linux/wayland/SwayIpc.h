#pragma once

#include <QByteArray>
#include <QCoro/QCoroTask>
#include <QJsonDocument>
#include <QLocalSocket>

#include <deque>
#include <memory>
#include <optional>

namespace nimbrelle {

/// The socket by which sway tells of itself and takes commands. Answers come in the order of the questions.
class SwayIpc final : public QObject {
    Q_OBJECT

public:
    /// Connects to a path such as SWAYSOCK holds, without waiting; what is asked before is kept back.
    explicit SwayIpc(const QString &path);
    /// Open questions get no answer.
    ~SwayIpc() override;

    enum class Question : quint32 { command = 0, subscribe = 2, tree = 4 };

    /// Whether it is closed, or was never there.
    bool isEnded() const { return m_isEnded; }

    /// Absent when the socket is closed, or closes first.
    QCoro::Task<std::optional<QJsonDocument>> ask(Question question, QByteArray text = {});

signals:
    /// What was subscribed to has happened; `kind` is the number that sway gives it.
    void happened(quint32 kind, const QJsonDocument &what);
    void closed();

private:
    class Answer;

    void read();
    void end();
    void giveUp();

    QLocalSocket m_socket;
    QByteArray m_received;
    QByteArray m_unsent;
    std::deque<std::shared_ptr<Answer>> m_asked;
    bool m_isEnded = false;
};

} // namespace nimbrelle
