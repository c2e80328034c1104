#pragma once

#include "frame/Timestamp.h"

namespace nimbrelle {

class SyncService;

/// How sync is doing, in one line for the user.
struct SyncStatus {
    bool isBusy = false;
    std::optional<QString> lastError;
    std::optional<Timestamp> lastSyncAt;

    static SyncStatus of(const SyncService &service);

    /// As of `now`, with older times in the user's own time zone.
    QString text(Timestamp now) const;
};

} // namespace nimbrelle
