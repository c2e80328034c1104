#pragma once

#include "server/Conditions.h"
#include "server/Crypto.h"
#include "server/Failure.h"
#include "server/HistoryPolicy.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nimbrelle::server {

class StoreFailure : public Failure {
public:
    enum class Kind { damaged, full, other };

    StoreFailure(Kind kind, const std::string &text) : Failure(text), m_kind(kind) { }
    Kind kind() const { return m_kind; }

private:
    Kind m_kind;
};

/// One notebook on this server: a name for its keeper, a token for its devices, a document with a version.
struct Notebook {
    std::int64_t id = 0;
    std::string name;
    std::string tokenSalt; ///< with the token secret this gives the token again
    std::optional<Digest> tokenHash; ///< absent after a revoke: no device gets in
    std::int64_t version = 0; ///< 0: nothing stored yet; only ever rises
    std::chrono::sys_seconds createdAt;
};

struct Document {
    std::int64_t version = 0;
    std::string body;
};

/// A write that comes from a device.
struct NewDocument {
    std::string_view body;
    std::int64_t words = 0;
    std::chrono::sys_seconds writtenAt;
};

/// Where notebooks are kept. Every call may come from any thread, and other processes may work on the same
/// data. What a call has written when it returns survives a loss of power. Trouble with the medium is thrown
/// as StoreFailure.
class Store {
public:
    virtual ~Store() = default;

    /// A small value under a name, kept for good.
    virtual std::optional<std::string> setting(std::string_view key) = 0;
    virtual void setSetting(std::string_view key, std::string_view value) = 0;

    virtual std::vector<Notebook> notebooks() = 0;
    virtual std::optional<Notebook> notebookNamed(std::string_view name) = 0;
    virtual std::optional<Notebook> notebookOfToken(const Digest &tokenHash) = 0;

    /// The name must be new.
    virtual void addNotebook(std::string_view name, std::string_view salt, const Digest &tokenHash,
        std::chrono::sys_seconds now) = 0;
    /// Absent: nobody gets in until another token is set. The document stays.
    virtual void setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash) = 0;

    /// Null when nothing is stored.
    virtual std::shared_ptr<const Document> read(std::int64_t notebook) = 0;
    /// The new version; absent when the conditions don't allow a write over the current one. One transaction.
    virtual std::optional<std::int64_t> write(
        std::int64_t notebook, const Conditions &conditions, const NewDocument &document) = 0;

    /// Oldest first.
    virtual std::vector<VersionRecord> history(std::int64_t notebook) = 0;
    /// Writes what `version` held as a new, higher version and returns that; absent when it isn't kept.
    virtual std::optional<std::int64_t> restore(
        std::int64_t notebook, std::int64_t version, std::chrono::sys_seconds now) = 0;
};

} // namespace nimbrelle::server
