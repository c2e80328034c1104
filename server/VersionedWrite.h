#pragma once

#include "server/Store.h"

#include <functional>

namespace nimbrelle::server {

/// Whether a document may be written over this version; 0: nothing is stored.
using WriteCondition = std::function<bool(std::int64_t version)>;

/// The document doesn't fit into the notebook's quota, even when all is dropped that may be.
class QuotaExceeded : public Failure {
public:
    QuotaExceeded() : Failure("the notebook's quota is used up") { }
};

/// The server's own quota, for notebooks without one: what each part of it is kept under as a setting.
Quota defaultQuota(Store &store);
void setDefaultQuota(Store &store, const Quota &quota);
/// What holds for the notebook: its own limits, and the server's for those that it has none of.
Quota quotaOf(Store &store, const Notebook &notebook);

/// Writes a new version into any store, by the one rule for what is kept of the earlier ones. Returns it, or
/// nothing when the condition does not hold for the version that is stored by then. Throws StoreFailure and
/// QuotaExceeded.
std::optional<std::int64_t> writeVersion(Store &store, std::int64_t notebook, const NewDocument &document,
    const WriteCondition &condition, const Quota &quota = {});

/// The operator's act, which no quota stops. Writes what `version` held as a new, higher version and returns
/// that; absent when it isn't kept.
std::optional<std::int64_t> restoreVersion(
    Store &store, std::int64_t notebook, std::int64_t version, std::chrono::sys_seconds now);

} // namespace nimbrelle::server
