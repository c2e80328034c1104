#include "server/VersionedWrite.h"

#include <algorithm>

namespace nimbrelle::server {

namespace {

VersionRecord recordOf(std::int64_t version, const NewDocument &document)
{
    return {.version = version,
        .writtenAt = document.writtenAt,
        .words = document.words,
        .bytes = static_cast<std::int64_t>(document.body.size())};
}

} // namespace

std::optional<std::int64_t> writeVersion(
    Store &store, std::int64_t notebook, const NewDocument &document, const WriteCondition &condition)
{
    // A further turn means that another writer was faster, so somebody always gets on.
    while (const auto current = store.version(notebook)) {
        if (!condition(*current))
            return std::nullopt;
        const std::int64_t next = *current + 1;
        // The history is read after the version: if that version is still there at the append, nobody wrote
        // in between, and the change fits.
        const auto change = HistoryPolicy::changeFor(recordOf(next, document), store.history(notebook));
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
