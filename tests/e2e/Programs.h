#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace nimbrelle {

/// What a program left when it ended.
struct Ended {
    int code = -1; ///< -1 when it crashed, hung or could not start
    QString output;
    QString errors;

    QStringList lines() const { return output.split(u'\n', Qt::SkipEmptyParts); }
};

/// Runs `program` to its end in exactly this environment ("NAME=value").
Ended run(const QString &program, const QStringList &arguments, const QStringList &environment);

/// A server program that runs as long as this lives, and must end cleanly when told to.
class RunningServer {
public:
    /// Waits for the first line of its output.
    RunningServer(const QString &program, const QStringList &arguments);
    ~RunningServer();

    const QString &firstLine() const { return m_firstLine; }

private:
    QProcess m_process;
    QString m_firstLine;
};

/// A sync server on a port of its own, with an empty notebook.
class SyncServer {
public:
    SyncServer();

    const QString &code() const { return m_code; }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<RunningServer> m_running;
    QString m_code;
};

/// A data directory of its own and the program that works in it.
class Device {
public:
    Ended operator()(const QStringList &arguments, const QStringList &environment = {}) const;

    /// Points the AI at an address, with a key.
    void useProvider(const QString &address, const QString &key) const;
    QString path(const QString &file) const { return m_directory.filePath(file); }

private:
    QTemporaryDir m_directory;
};

} // namespace nimbrelle
