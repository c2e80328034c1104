#pragma once

#include "platform/linux/bus/AtSpiElements.h"

#include <QDBusMessage>
#include <QElapsedTimer>
#include <QHash>
#include <QObject>

#include <memory>

namespace nimbrelle {

class AtSpiBus;

/// Questions to programs on the accessibility bus. Those of one gesture together are waited for no longer
/// than 0.3 seconds; after that each answer is absent at once. What is open when this dies is never answered.
class AtSpiQuestions final : public QObject {
    Q_OBJECT

public:
    explicit AtSpiQuestions(AtSpiBus &bus);

    void beginGesture();
    QCoro::Task<std::optional<QVariantList>> ask(
        AccessibleElement element, QString interface, QString method, QVariantList arguments = {});
    /// The same of each, side by side.
    QCoro::Task<QList<atspi::Answer>> askAll(atspi::Elements elements, QString method);
    QCoro::Task<std::optional<QVariant>> propertyOf(
        AccessibleElement element, QString interface, QString name);
    /// Nobody waits for the answer.
    void askInPassing(const AccessibleElement &element, const QString &interface, const QString &method);
    /// 0: not known. The bus itself answers this, even for a program that hangs.
    QCoro::Task<qint64> processOf(QString program);

    /// Of all programs that have told of themselves.
    QCoro::Task<QStringList> programs();
    QCoro::Task<std::optional<AccessibleElement>> activeWindowOf(QString program);

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

    QCoro::Task<QDBusMessage> answerTo(QDBusMessage question);

    AtSpiBus &m_bus;
    QHash<QString, qint64> m_processes; ///< by program
    std::shared_ptr<AskingTime> m_time = std::make_shared<AskingTime>();
};

} // namespace nimbrelle
