#include "server/DocumentCache.h"

#include <algorithm>
#include <utility>

namespace nimbrelle::server {

namespace {

bool isSame(const Document &document, const VersionRecord &record)
{
    return document.version == record.version && document.writtenAt == record.writtenAt
        && std::cmp_equal(document.body.size(), record.bytes);
}

auto orderOf(const Document &document)
{
    return std::pair(document.version, document.writtenAt);
}

} // namespace

DocumentCache::DocumentCache(std::size_t byteLimit) : m_byteLimit(byteLimit) { }

std::shared_ptr<const Document> DocumentCache::find(std::int64_t notebook, const VersionRecord &newest)
{
    const std::lock_guard lock(m_mutex);
    const auto entry = m_entries.find(notebook);
    if (entry == m_entries.end() || !isSame(*entry->second.document, newest))
        return nullptr;
    entry->second.lastUse = ++m_uses;
    return entry->second.document;
}

void DocumentCache::put(std::int64_t notebook, std::shared_ptr<const Document> document)
{
    const std::lock_guard lock(m_mutex);
    const auto present = m_entries.find(notebook);
    // Two requests may arrive here in another order than they read.
    if (present != m_entries.end() && orderOf(*present->second.document) >= orderOf(*document))
        return;
    drop(notebook);
    if (document->body.size() > m_byteLimit)
        return;
    while (m_bytes + document->body.size() > m_byteLimit)
        dropLeastUsed();
    m_bytes += document->body.size();
    m_entries.emplace(notebook, Entry{.document = std::move(document), .lastUse = ++m_uses});
}

void DocumentCache::clear()
{
    const std::lock_guard lock(m_mutex);
    m_entries.clear();
    m_bytes = 0;
}

void DocumentCache::drop(std::int64_t notebook)
{
    const auto entry = m_entries.find(notebook);
    if (entry == m_entries.end())
        return;
    m_bytes -= entry->second.document->body.size();
    m_entries.erase(entry);
}

void DocumentCache::dropLeastUsed()
{
    const auto oldest =
        std::ranges::min_element(m_entries, {}, [](const auto &entry) { return entry.second.lastUse; });
    drop(oldest->first);
}

} // namespace nimbrelle::server
