#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

/// Files in one zip archive.
namespace nimbrelle::Archive {

struct Entry {
    QString name;
    QByteArray bytes;

    bool operator==(const Entry &) const = default;
};

/// Hands the archive over piece by piece. Throws a Failure when it can't be made.
void write(const QList<Entry> &entries, const std::function<void(QByteArrayView piece)> &drain);

struct Limits {
    qsizetype entries = 64;
    qint64 bytes = 512LL << 20; ///< of all entries together, unpacked
};

/// Hands the entries over in the archive's order; nothing is put on disk. What `take` throws ends the
/// reading. Throws a Failure for what is no archive, is damaged, cut short or encrypted, holds anything but
/// plain files, or exceeds the limits.
void read(
    QByteArrayView archive, const std::function<void(const Entry &entry)> &take, const Limits &limits = {});

} // namespace nimbrelle::Archive
