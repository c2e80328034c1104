#pragma once

#include "export/BackupImport.h"
#include "export/ExportFile.h"
#include "export/LocalBackups.h"
#include "frame/TaskSlot.h"

#include <QCoro/QCoroTask>
#include <QObject>

namespace nimbrelle {

class Background;
class Clock;
class ConfigStore;
class WordImport;

/// Behind the section of the settings in which the learner takes the data along and brings it back: one piece
/// of work at a time, away from the main thread but for what changes the notebook. Main thread only.
class DataExchange : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the object.
    struct Parts {
        const AppPaths &paths;
        const ConfigStore &config;
        WordStore &words;
        CoachHistory &coach;
        WordImport &wordImport;
        const Clock &clock;
        Background &background;
        LocalBackups &backups;
    };

    struct Message {
        bool isGood = false;
        QString text;

        bool operator==(const Message &) const = default;
    };

    explicit DataExchange(const Parts &parts);

    bool isBusy() const { return m_isBusy; }
    /// How the last piece of work ended; absent while one runs and before the first.
    const std::optional<Message> &message() const { return m_message; }
    /// What a backup would change that waits for the user's word; absent when there is none.
    const std::optional<BackupPlan> &plan() const { return m_plan; }
    /// Those that the program keeps by itself, the newest first.
    QList<KeptBackup> kept() const { return m_parts.backups.kept(); }
    QDateTime localNow() const;

    /// What a file is called unless the user chooses otherwise.
    QString suggestedName(ExportKind kind) const;
    void exportTo(ExportKind kind, const QString &file);
    /// A plan follows, or a message of what is wrong.
    void readBackup(const QString &file);
    void readKept(const KeptBackup &backup) { readBackup(m_parts.backups.fileOf(backup)); }
    void bringBack();
    void dropBackup();
    /// Puts the words of a list into the queue of those to look up.
    void importWords(const QString &file);

signals:
    void changed();

private:
    ImportParts importParts() const;
    void begin();
    void end(const std::optional<Message> &message);
    void end(const std::exception &failure);
    QCoro::Task<> runExport(ExportKind kind, QString file, std::stop_token stop);
    QCoro::Task<> runReading(QString file, std::stop_token stop);
    QCoro::Task<> runMerge(Backup::Content backup, QString source, std::stop_token stop);
    QCoro::Task<> runImport(QString file, std::stop_token stop);

    const Parts m_parts;
    bool m_isBusy = false;
    std::optional<Message> m_message;
    QString m_source; ///< the file of the backup that waits
    std::optional<Backup::Content> m_backup;
    std::optional<BackupPlan> m_plan;
    TaskSlot m_task;
};

} // namespace nimbrelle
