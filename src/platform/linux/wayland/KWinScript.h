#pragma once

#include <QCoro/QCoroTask>
#include <QDBusConnection>
#include <QObject>
#include <QTemporaryFile>
#include <QVariant>

#include <memory>
#include <optional>

namespace nimbrelle {

/// A script that KWin runs for us. It lasts until this object ends, or KWin forgets it.
class KWinScript final : public QObject {
    Q_OBJECT

public:
    static const QString service; ///< KWin's name on the bus

    /// KWin knows the script by `name`; an earlier one of that name ends with the first run().
    KWinScript(const QDBusConnection &bus, QString name);
    ~KWinScript() override;

    /// Runs the script in place of the one before. What it does first it may do a little later.
    QCoro::Task<> run(QByteArray script);

    /// Whether KWin still has it; absent when KWin does not answer in time. What the script had sent before
    /// KWin answered arrives before the answer.
    QCoro::Task<std::optional<bool>> isLoaded();

private:
    QCoro::Task<QVariant> ask(QString method, QVariantList arguments = {});

    QDBusConnection m_bus;
    const QString m_name;
    std::unique_ptr<QTemporaryFile> m_file; // KWin reads it when it starts the script
};

} // namespace nimbrelle
