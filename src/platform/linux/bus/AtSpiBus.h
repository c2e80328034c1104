#pragma once

#include "platform/AccessibilityReader.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QVariant>

#include <memory>

namespace nimbrelle {

/// Our connection to the accessibility bus, and the asking there. A bus that has gone is opened again as soon
/// as the session offers another.
class AtSpiBus final : public QObject {
    Q_OBJECT

public:
    AtSpiBus();
    ~AtSpiBus() override;

    enum class State {
        connecting,
        connected,
        closed, ///< it could not be opened, or it has gone
        notInstalled,
    };
    State state() const;

    /// Turns accessibility on for the session and connects to its bus, without waiting for either.
    void open();

    QDBusConnection connection() const { return m_bus; }

    void beginGesture();
    QCoro::Task<std::optional<QVariantList>> ask(
        AccessibleElement element, QString interface, QString method, QVariantList arguments = {});
    QCoro::Task<std::optional<QVariant>> propertyOf(
        AccessibleElement element, QString interface, QString name);
    /// 0: not known. The bus itself answers this, even for a program that hangs.
    QCoro::Task<qint64> processOf(QString program);

signals:
    void opened();
    void programLeft(const QString &program);

private:
    /// How long the questions of one gesture have been waited for, side by side or one after another.
    struct AskingTime {
        int open = 0; ///< questions
        std::chrono::nanoseconds earlier{0};
        QElapsedTimer since; ///< while at least one is open

        std::chrono::nanoseconds used() const;
        void begin();
        void end();
    };

    void use(const QString &address);
    QCoro::Task<QDBusMessage> answerTo(QDBusMessage question);

    QDBusServiceWatcher m_launcher;
    QDBusConnection m_bus;
    QString m_address;
    State m_attempt = State::connecting; ///< what became of the last one
    QHash<QString, qint64> m_processes; ///< by program
    std::shared_ptr<AskingTime> m_time = std::make_shared<AskingTime>();
};

} // namespace nimbrelle
