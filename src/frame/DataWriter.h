#pragma once

#include "frame/AtomicFile.h"

#include <QList>
#include <QMap>

#include <functional>

namespace nimbrelle {

/// A data file whose last write failed, so that memory is ahead of the disk.
struct UnwrittenFile {
    QString path;
    int error = 0; ///< as errno names it

    bool operator==(const UnwrittenFile &) const = default;
};

/// How the owners of data files write: by which calls of the system, and what there is to tell of writes that
/// failed. Main thread only.
class DataWriter {
public:
    explicit DataWriter(FileCalls &calls = FileCalls::system()) : m_calls(calls) { }
    Q_DISABLE_COPY_MOVE(DataWriter)
    static DataWriter &shared();

    FileCalls &calls() const { return m_calls; }

    /// How a file is written once more, with what its owner holds then.
    struct Again {
        const void *owner;
        std::function<void()> write;
    };

    /// To be told how each write of a file ended. What failed before is tried again when one succeeds, and at
    /// retry().
    void report(const QString &path, WriteResult result, Again again = {.owner = nullptr, .write = {}});
    void retry();
    /// The owner ends, and can't be asked to write again.
    void forget(const void *owner);

    /// In the order in which they began to fail; a write that succeeds takes its file out.
    const QList<UnwrittenFile> &unwritten() const { return m_unwritten; }

private:
    FileCalls &m_calls;
    QList<UnwrittenFile> m_unwritten;
    QMap<QString, Again> m_again; ///< by path, of those unwritten that can be
    bool m_isRetrying = false;
};

} // namespace nimbrelle
