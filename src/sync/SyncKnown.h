#pragma once

#include "notebook/SyncBundle.h"

namespace nimbrelle {

/// What the document held when it and the server's last agreed, in short: enough to tell that this device has
/// lost some of it since, as a damaged file or an old backup does. Private to the device and never sent. It
/// stands in a file of its own, since the state beside it is written after every quiet round.
struct SyncKnown {
    QString hash; ///< as in the SyncState that this belongs to
    QString records; ///< packed: short id, and for a word the second of its last change, else 0
    QString parts; ///< packed: short ids of an example or a note and of its word
    QString buried; ///< packed: short ids that have a tombstone
    qint64 logCount = 0; ///< lines of the log, which only grows at its end
    QString logHash; ///< of those
    std::optional<ReviewStats> stats;
    bool hasSettings = false;

    static SyncKnown of(const SyncBundle &document, const QString &hash);

    /// Whether `document` still has all of it, what was deleted since aside. A word whose last change is
    /// earlier than it was has lost something, unless `now` is earlier as well: a clock was set back.
    bool isHeldBy(const SyncBundle &document, Timestamp now) const;

    bool operator==(const SyncKnown &) const = default;
};
template <Is<SyncKnown> Record>
inline constexpr auto fieldsOf<Record> = fields(field("hash", &Record::hash),
    field("records", &Record::records), field("parts", &Record::parts), field("buried", &Record::buried),
    field("logCount", &Record::logCount), field("logHash", &Record::logHash), field("stats", &Record::stats),
    field("hasSettings", &Record::hasSettings));

} // namespace nimbrelle
