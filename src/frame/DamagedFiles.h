#pragma once

#include "frame/AtomicFile.h"

#include <QSet>
#include <QStringList>

namespace nimbrelle {

class Clock;

/// The files of one owner that hold something which can't be read. Before such a file is written over, what
/// it holds is kept beside it, under its name with the local time: words.damaged-20261123-142233.json.
class DamagedFiles {
public:
    explicit DamagedFiles(const Clock &clock, FileCalls &calls = FileCalls::system())
        : m_clock(clock), m_calls(calls)
    {
    }

    /// To be told of each file that gave no value; one that is missing is not damaged.
    void add(const QString &path);

    /// Keeps what a damaged file holds, once. True unless that failed: then nothing may be written over it.
    bool keep(const QString &path, FileMode mode);

    /// The names of all that were ever kept in `directory` and are still there, the oldest first.
    static QStringList keptIn(const QString &directory);

private:
    QString nameFor(const QString &path) const;

    const Clock &m_clock;
    FileCalls &m_calls;
    QSet<QString> m_paths;
};

} // namespace nimbrelle
