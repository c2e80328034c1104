#pragma once

#include "frame/DataWriter.h"
#include "frame/Timestamp.h"

#include <QCoro/QCoroTask>
#include <QDateTime>
#include <QObject>

#include <optional>

namespace nimbrelle {

class AppPaths;
class Background;
class Clock;

/// Why a backup was kept.
enum class BackupOccasion { sync, import };

/// A backup that the program keeps by itself, as its name tells.
struct KeptBackup {
    QString name; ///< of the file
    QDateTime madeAt; ///< by the clock on the wall
    qsizetype words = 0;
    BackupOccasion occasion = BackupOccasion::sync;

    bool operator==(const KeptBackup &) const = default;

    /// Such as nimbrelle-20261123-142233-sync-186.zip.
    static QString nameFor(QDateTime madeAt, BackupOccasion occasion, qsizetype words);
    /// Absent for any other name.
    static std::optional<KeptBackup> fromName(const QString &name);

    /// For the user, in one line.
    QString text(const QDateTime &now) const;
};

/// Keeps backups of the data files in a folder of theirs, before the first sync of a day and before each
/// import that changes something: of each of the seven latest days that have any, the first and the last of
/// either kind. Main thread only; the archives are made in the background.
class LocalBackups : public QObject {
    Q_OBJECT

public:
    LocalBackups(const AppPaths &paths, const Clock &clock, Background &background,
        DataWriter &writer = DataWriter::shared());

    /// The newest first.
    QList<KeptBackup> kept() const;
    QString fileOf(const KeptBackup &backup) const;

    /// Keeps one unless this day has one. Never throws: where it can't be kept, the writer tells, and the
    /// sync goes on.
    QCoro::Task<> beforeSync();
    /// Throws a Failure with a sentence when it can't be kept, so that nothing is imported. `source` is what
    /// comes in; it stays when it is one of the backups itself.
    QCoro::Task<> beforeImport(QString source);

    /// The names of those to remove, once `made` is there. `all` has the newest first.
    static QStringList superfluous(const QList<KeptBackup> &all, const KeptBackup &made);

signals:
    void changed(); ///< of those that are kept

private:
    QCoro::Task<WriteResult> keep(BackupOccasion occasion, QString source);

    const AppPaths &m_paths;
    const Clock &m_clock;
    Background &m_background;
    DataWriter &m_writer;
};

} // namespace nimbrelle
