#pragma once

#include "server/Store.h"

#include <mutex>
#include <unordered_map>

namespace nimbrelle::server {

/// Documents that were asked for lately, ready to be sent. What was written once never changes, so nothing
/// here can be out of date; whoever asks says what the store holds now. Its number alone would not do: a
/// database that failed over may have lost a version, and written another one of that number since.
class DocumentCache {
public:
    explicit DocumentCache(std::size_t byteLimit);

    /// Null when this very version isn't here.
    std::shared_ptr<const Document> find(std::int64_t notebook, const VersionRecord &newest);
    /// Takes the place of an earlier version of the notebook; the ones not asked for longest make room.
    void put(std::int64_t notebook, std::shared_ptr<const Document> document);
    /// For whoever needs the memory now.
    void clear();

private:
    struct Entry {
        std::shared_ptr<const Document> document;
        std::uint64_t lastUse = 0;
    };

    void drop(std::int64_t notebook);
    void dropLeastUsed();

    const std::size_t m_byteLimit;
    std::mutex m_mutex;
    std::unordered_map<std::int64_t, Entry> m_entries;
    std::size_t m_bytes = 0;
    std::uint64_t m_uses = 0;
};

} // namespace nimbrelle::server
