#pragma once

#include "shell/GrowthFolder.h"

#include <QObject>
#include <QProcess>

namespace nimbrelle {

/// The report on the learner's growth, written by a generator that may be missing or not be ours
/// (GrowthGenerator).
class GrowthArchive : public QObject {
    Q_OBJECT

public:
    explicit GrowthArchive(const AppPaths &paths, QObject *parent = nullptr);
    /// Ends a generator that still runs.
    ~GrowthArchive() override;

    QString script() const { return m_folder.script(); }
    QString report() const { return m_folder.report(); }
    bool isInstalled() const { return m_folder.hasOwnScript(); }

    bool isUpdating() const { return m_generator.state() != QProcess::NotRunning; }

    /// Runs the generator, if there is one, as a process of its own; updated() follows. While it runs, a
    /// further call does nothing.
    void update();

signals:
    /// It has ended, well or not, or there was none to run.
    void updated();

private:
    const GrowthFolder m_folder;
    QProcess m_generator;
};

} // namespace nimbrelle
