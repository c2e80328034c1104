#pragma once

#include <QObject>
#include <QProcess>

namespace nimbrelle {

class AppPaths;

/// The report on the learner's growth, written by a generator that is no part of this program and may be
/// missing. It stands in a folder beside that of the data files.
class GrowthArchive : public QObject {
    Q_OBJECT

public:
    explicit GrowthArchive(const AppPaths &paths, QObject *parent = nullptr);
    /// Ends a generator that still runs.
    ~GrowthArchive() override;

    QString script() const;
    QString report() const;

    /// Whether there is a generator that is the user's own: script and folders, none of them a link, belong
    /// to the user, and neither a group nor others can write them. Any other could be somebody else's
    /// program.
    bool isInstalled() const;

    bool isUpdating() const { return m_generator.state() != QProcess::NotRunning; }

    /// Runs the generator, if there is one, as a process of its own; updated() follows. While it runs, a
    /// further call does nothing.
    void update();

signals:
    /// It has ended, well or not, or there was none to run.
    void updated();

private:
    const QString m_folder;
    QProcess m_generator;
};

} // namespace nimbrelle
