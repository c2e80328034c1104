#pragma once

#include "server/Crypto.h"
#include "server/Failure.h"
#include "server/HistoryPolicy.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbrelle::server {

class StoreFailure : public Failure {
public:
    enum class Kind {
        damaged,
        full,
        unavailable, ///< for a while: what was asked may succeed later, and a write may have happened
        other
    };

    StoreFailure(Kind kind, const std::string &text) : Failure(text), m_kind(kind) { }
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

/// Whether a store takes changes: not while it is being moved into another one, nor once it was.
enum class StoreState { open, moving, moved };

/// What a store in this state says to whoever would change it.
constexpr std::string_view refusalOf(StoreState state)
{
    return state == StoreState::moving
        ? "this store is being moved with nimbrelle-server move; if that was interrupted, run it again or "
          "end "
          "it with its option --undo"
        : "this store was moved with nimbrelle-server move; name the new one with --store";
}

/// A notebook's own limits. Absent: the server's holds (see quotaOf); 0: no limit.
struct OwnQuota {
    std::optional<std::int64_t> bytes;
    std::optional<std::int64_t> versions;
    bool operator==(const OwnQuota &) const = default;
};

/// As a store keeps one of them: 0 stands for none of its own, and a negative number for no limit.
constexpr std::int64_t storedLimit(std::optional<std::int64_t> limit)
{
    if (!limit)
        return 0;
    return *limit > 0 ? *limit : -1;
}

constexpr std::optional<std::int64_t> limitIn(std::int64_t stored)
{
    return stored == 0 ? std::nullopt : std::optional(std::max<std::int64_t>(stored, 0));
}

/// One notebook on this server: a name for the operator, a token for its devices, a document with a version.
struct Notebook {
    std::int64_t id = 0;
    std::string name;
    std::string tokenSalt; ///< with the token secret this gives the token again
    std::optional<Digest> tokenHash; ///< absent after a revoke: no device gets in
    std::int64_t version = 0; ///< 0: nothing stored yet; only ever rises
    std::chrono::sys_seconds createdAt;
    OwnQuota quota;

    bool operator==(const Notebook &) const = default;
};

struct Document {
    std::int64_t version = 0;
    std::chrono::sys_seconds writtenAt; ///< tells it from one of the same number that a failover lost
    std::string body;
};

/// An index finds a notebook by this part of its token's hash; whether the token is right is then decided in
/// constant time.
inline std::string_view selectorOf(const Digest &tokenHash)
{
    return bytesOf(tokenHash).substr(0, 8);
}

/// A document to be stored as a new version.
struct NewDocument {
    std::string_view body;
    std::int64_t words = 0;
    std::chrono::sys_seconds writtenAt;
};

/// Fills an empty store with what another holds, all or nothing: without a commit nothing has happened.
/// Throws StoreFailure.
class StoreImport {
public:
    virtual ~StoreImport() = default;
    /// Takes the place of one that is there already, as an interrupted init leaves it.
    virtual void addSetting(const std::string &key, const std::string &value) = 0;
    virtual void addNotebook(const Notebook &notebook) = 0;
    virtual void addVersion(std::int64_t notebook, const VersionRecord &record, std::string_view body) = 0;
    virtual void commit() = 0;
};

/// Where notebooks are kept. Every call may come from any thread, and other processes may work on the same
/// data. What a call has written when it returns survives a loss of power. Failures of the medium are thrown
/// as StoreFailure.
class Store {
public:
    virtual ~Store() = default;

    /// Throws StoreFailure when what is kept is damaged. Takes up to a second a gigabyte.
    virtual void check() = 0;

    /// A small value under a name, kept for good.
    virtual std::optional<std::string> setting(std::string_view key) = 0;
    virtual void setSetting(std::string_view key, std::string_view value) = 0;
    virtual std::map<std::string, std::string> settings() = 0;

    virtual std::vector<Notebook> notebooks() = 0;
    virtual std::optional<Notebook> notebookNamed(std::string_view name) = 0;
    virtual std::optional<Notebook> notebookOfToken(const Digest &tokenHash) = 0;

    /// The name must be new.
    virtual void addNotebook(std::string_view name, std::string_view salt, const Digest &tokenHash,
        std::chrono::sys_seconds now) = 0;
    /// Absent: nobody gets in until another token is set. The document stays.
    virtual void setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash) = 0;

    virtual void setQuota(std::int64_t notebook, const OwnQuota &quota) = 0;

    /// The current version, 0 when nothing is stored; absent when there is no such notebook.
    virtual std::optional<std::int64_t> version(std::int64_t notebook) = 0;
    /// Null when nothing is stored.
    virtual std::shared_ptr<const Document> newestDocument(std::int64_t notebook) = 0;
    /// Null when that version isn't kept.
    virtual std::shared_ptr<const Document> document(std::int64_t notebook, std::int64_t version) = 0;
    /// What is kept, in order of version.
    virtual std::vector<VersionRecord> history(std::int64_t notebook) = 0;

    /// The last of the history, without reading the rest; absent when nothing is stored.
    virtual std::optional<VersionRecord> newestRecord(std::int64_t notebook) = 0;

    /// Compare-and-set: stores the document as version `expected` + 1 and changes the history along with it,
    /// all or nothing; false when `expected` isn't the current version. Which versions are kept is the
    /// caller's matter (see writeVersion).
    virtual bool append(std::int64_t notebook, std::int64_t expected, const NewDocument &document,
        const HistoryChange &change) = 0;
    /// All or nothing, and never the current version.
    virtual void drop(std::int64_t notebook, const std::vector<std::int64_t> &versions) = 0;

    /// A store that is not open can be read, but refuses every change, whichever process has it open.
    /// check() says so.
    virtual StoreState state() = 0;
    virtual void setState(StoreState state) = 0;
    /// This store must not be used until it is over.
    virtual std::unique_ptr<StoreImport> beginImport() = 0;
};

} // namespace nimbrelle::server
