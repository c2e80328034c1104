#include "server/VersionedWrite.h"

#include <algorithm>
#include <charconv>

namespace nimbrelle::server {

namespace {

constexpr std::string_view quotaBytes = "quota-bytes";
constexpr std::string_view quotaVersions = "quota-versions";

std::int64_t numberIn(const std::map<std::string, std::string> &settings, std::string_view key)
{
    std::int64_t number = 0;
    if (const auto found = settings.find(std::string(key)); found != settings.end())
        std::from_chars(found->second.data(), found->second.data() + found->second.size(), number);
    return number;
}

VersionRecord recordOf(std::int64_t version, const NewDocument &document)
{
    return {.version = version,
        .writtenAt = document.writtenAt,
        .words = document.words,
        .bytes = static_cast<std::int64_t>(document.body.size())};
}

} // namespace

Quota defaultQuota(Store &store)
{
    const auto settings = store.settings();
    return {.bytes = numberIn(settings, quotaBytes), .versions = numberIn(settings, quotaVersions)};
}

void setDefaultQuota(Store &store, const Quota &quota)
{
    store.setSetting(quotaBytes, std::to_string(quota.bytes));
    store.setSetting(quotaVersions, std::to_string(quota.versions));
}

Quota quotaOf(Store &store, const Notebook &notebook)
{
    const OwnQuota &own = notebook.quota;
    const Quota fallback = own.bytes && own.versions ? Quota() : defaultQuota(store);
    return {
        .bytes = own.bytes.value_or(fallback.bytes), .versions = own.versions.value_or(fallback.versions)};
}

std::optional<std::int64_t> writeVersion(Store &store, std::int64_t notebook, const NewDocument &document,
    const WriteCondition &condition, const Quota &quota)
{
    // A further turn means that another writer was faster, so somebody always gets on.
    while (const auto current = store.version(notebook)) {
        if (!condition(*current))
            return std::nullopt;
        const std::int64_t next = *current + 1;
        // The history is read after the version: if that version is still there at the append, nobody wrote
        // in between, and the change fits.
        const auto change =
            HistoryPolicy::changeFor(recordOf(next, document), store.history(notebook), quota);
        if (change.exceedsQuota)
            throw QuotaExceeded();
        if (store.append(notebook, *current, document, change))
            return next;
    }
    return std::nullopt;
}

std::optional<std::int64_t> restoreVersion(
    Store &store, std::int64_t notebook, std::int64_t version, std::chrono::sys_seconds now)
{
    const auto records = store.history(notebook);
    const auto record = std::ranges::find(records, version, &VersionRecord::version);
    const auto document = record == records.end() ? nullptr : store.document(notebook, version);
    if (!document)
        return std::nullopt;
    return writeVersion(store, notebook, {.body = document->body, .words = record->words, .writtenAt = now},
        [](std::int64_t) { return true; });
}

} // namespace nimbrelle::server
