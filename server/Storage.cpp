#include "server/Clock.h"
#include "server/Commands.h"
#include "server/Installation.h"
#include "server/VersionedWrite.h"

#include <algorithm>
#include <ostream>

namespace nimbrelle::server {

namespace {

bool changesQuota(const Options &options)
{
    return options.quotaBytes || options.quotaVersions || options.dropOwnQuota;
}

Quota changed(const Quota &quota, const Options &options)
{
    return {.bytes = options.quotaBytes.value_or(quota.bytes),
        .versions = options.quotaVersions.value_or(quota.versions)};
}

OwnQuota changed(const OwnQuota &quota, const Options &options)
{
    const OwnQuota kept = options.dropOwnQuota ? OwnQuota() : quota;
    return {.bytes = options.quotaBytes ? options.quotaBytes : kept.bytes,
        .versions = options.quotaVersions ? options.quotaVersions : kept.versions};
}

std::string limitText(std::int64_t limit, const char *unit)
{
    return (limit > 0 ? std::to_string(limit) : "any number of") + ' ' + unit;
}

void printQuota(const std::string &whose, const Quota &quota, std::ostream &out)
{
    out << whose << " may keep " << limitText(quota.bytes, "bytes") << " in "
        << limitText(quota.versions, "versions") << ".\n";
}

std::vector<Notebook> notebooksToPrune(Store &store, const Options &options)
{
    if (options.allNotebooks)
        return store.notebooks();
    return {selectedNotebook(store, options.name)};
}

// Without an age all may go, also what a clock that ran ahead put into the future.
std::chrono::sys_seconds pruneBefore(const Options &options)
{
    return options.olderThanDays > 0 ? now() - std::chrono::days(options.olderThanDays)
                                     : std::chrono::sys_seconds::max();
}

void pruneNotebook(Store &store, const Notebook &notebook, const Options &options, std::ostream &out)
{
    const auto records = store.history(notebook.id);
    const auto versions = HistoryPolicy::versionsToPrune(records,
        {.keptNewest = options.keptNewest,
            .before = pruneBefore(options),
            .alsoBeforeLoss = options.alsoBeforeLoss});
    std::vector<VersionRecord> going;
    std::ranges::copy_if(records, std::back_inserter(going),
        [&](const VersionRecord &record) { return std::ranges::binary_search(versions, record.version); });
    if (!options.dryRun)
        store.drop(notebook.id, versions);
    out << notebook.name << ": " << versions.size() << " of " << records.size() << " versions with "
        << totalBytes(going) << (options.dryRun ? " bytes would go.\n" : " bytes are gone.\n");
}

} // namespace

void Commands::quota(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    Store &store = *installation.store;
    if (options.name.empty()) {
        if (options.dropOwnQuota)
            throw UsageFailure("--default needs the name of a notebook");
        if (changesQuota(options))
            setDefaultQuota(store, changed(defaultQuota(store), options));
        return printQuota("A notebook without a quota of its own", defaultQuota(store), out);
    }
    const Notebook notebook = selectedNotebook(store, options.name);
    if (changesQuota(options))
        store.setQuota(notebook.id, changed(notebook.quota, options));
    printQuota('"' + notebook.name + '"', quotaOf(store, selectedNotebook(store, options.name)), out);
}

void Commands::prune(const Options &options, std::ostream &out)
{
    const Installation installation(options);
    for (const Notebook &notebook : notebooksToPrune(*installation.store, options))
        pruneNotebook(*installation.store, notebook, options, out);
}

} // namespace nimbrelle::server
