#pragma once

#include "frame/DataWriter.h"

#include <QSet>
#include <QStringList>

namespace nimbrelle {

class Clock;

/// The files of one owner that hold something which can't be read. Before such a file is written over, what
/// it holds is kept beside it, under its name with the local time: words.damaged-20261123-142233.json.
class DamagedFiles {
public:
    explicit DamagedFiles(const Clock &clock, DataWriter &writer = DataWriter::shared())
        : m_clock(clock), m_writer(writer)
    {
    }

    ~DamagedFiles() { m_writer.forget(this); }
    Q_DISABLE_COPY_MOVE(DamagedFiles)

    /// What their owner writes with.
    DataWriter &writer() const { return m_writer; }

    /// To be told of each file that gave no value; one that is missing is not damaged.
    void add(const QString &path);

    /// Keeps what a damaged file holds, once. Where that failed, nothing may be written over it.
    WriteResult keep(const QString &path, FileMode mode);

    /// The names of all that were ever kept in `directory` and are still there, the oldest first.
    static QStringList keptIn(const QString &directory);

private:
    QString nameFor(const QString &path) const;

    const Clock &m_clock;
    DataWriter &m_writer;
    QSet<QString> m_paths;
};

} // namespace nimbrelle
