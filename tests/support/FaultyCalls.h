#pragma once

#include "frame/AtomicFile.h"

#include <QHash>
#include <QList>

#include <cerrno>
#include <utility>

namespace nimbrelle {

enum class Fault {
    none,
    fails, ///< one call, as on a full disk
    cutsShort, ///< one write takes half, and the next one fails
    dies, ///< nothing of the process reaches the disk any more, but half of a write that it was in
};

/// The system's file calls, one of which goes wrong. Keeps what each file held after each of its writes.
class FaultyCalls final : public FileCalls {
public:
    /// The call of number `at` from here on, counted from 0; of the writes alone where they are cut short.
    void arm(Fault fault, int at)
    {
        m_fault = fault;
        m_left = at;
    }
    bool wasReached() const { return m_wasReached; }
    bool isDead() const { return m_isDead; }
    const QHash<QString, QList<QByteArray>> &written() const { return m_written; }

    int open(const char *path, int flags, mode_t mode) override
    {
        const int file = goesOn() ? FileCalls::open(path, flags, mode) : -1;
        if (file >= 0)
            m_names[file] = QString::fromUtf8(path);
        return file;
    }
    int lock(int file, int operation) override { return goesOn() ? FileCalls::lock(file, operation) : -1; }
    int setMode(int file, mode_t mode) override { return goesOn() ? FileCalls::setMode(file, mode) : -1; }
    ssize_t write(int file, const char *bytes, std::size_t count) override
    {
        const bool wasDead = m_isDead, mustFail = std::exchange(m_mustFail, false);
        const Fault fault = mustFail ? Fault::fails : next();
        if (fault == Fault::fails || wasDead) {
            errno = ENOSPC;
            return -1;
        }
        m_mustFail = fault == Fault::cutsShort;
        const ssize_t taken = FileCalls::write(file, bytes, fault == Fault::none ? count : count / 2);
        if (fault == Fault::none && !m_names[file].endsWith(QStringLiteral(".tmp")))
            keep(m_names[file]);
        return fault == Fault::dies ? -1 : taken;
    }
    int truncate(int file, off_t size) override { return goesOn() ? FileCalls::truncate(file, size) : -1; }
    int flush(int file) override { return goesOn() ? FileCalls::flush(file) : -1; }
    int close(int file) override
    {
        const bool isGood = goesOn();
        const int result = FileCalls::close(file); // the kernel does it for the dead
        return isGood ? result : -1;
    }
    int rename(const char *from, const char *to) override
    {
        if (!goesOn() || FileCalls::rename(from, to) != 0)
            return -1;
        keep(QString::fromUtf8(to));
        return 0;
    }
    int remove(const char *path) override { return goesOn() ? FileCalls::remove(path) : -1; }

private:
    /// How this call is to go.
    Fault next()
    {
        if (m_isDead)
            return Fault::dies;
        if (m_fault == Fault::none || m_wasReached || m_left-- > 0)
            return Fault::none;
        m_wasReached = true;
        m_isDead = m_fault == Fault::dies;
        return m_fault;
    }
    bool goesOn()
    {
        const bool isGood = m_fault == Fault::cutsShort || next() == Fault::none;
        errno = ENOSPC;
        return isGood;
    }
    void keep(const QString &path) { m_written[path].append(readFile(path).value_or(QByteArray())); }

    Fault m_fault = Fault::none;
    int m_left = 0;
    bool m_wasReached = false;
    bool m_isDead = false;
    bool m_mustFail = false;
    QHash<int, QString> m_names;
    QHash<QString, QList<QByteArray>> m_written;
};

} // namespace nimbrelle
