#pragma once

#include "frame/Record.h"
#include "frame/Timestamp.h"

#include <QString>

#include <optional>

namespace nimbrelle {

/// What this device remembers of the server. Private to the device and never sent.
struct SyncState {
    QString server; ///< the address that this belongs to
    qint64 version = 0; ///< of the server's document as last seen; 0: none
    QString hash; ///< of the local document when it and the server's last agreed
    std::optional<Timestamp> lastSyncAt; ///< when the last exchange finished

    bool operator==(const SyncState &) const = default;
};
template <Is<SyncState> Record>
inline constexpr auto fieldsOf<Record> =
    fields(field("server", &Record::server), field("version", &Record::version), field("hash", &Record::hash),
        field("lastSyncAt", &Record::lastSyncAt));

} // namespace nimbrelle
