#pragma once

#include "server/PostgresPool.h"

namespace nimbrelle::server {

/// A PostgreSQL database that several server processes may serve at once. Nothing is kept in this process but
/// connections.
class PostgresStore final : public Store {
public:
    /// Makes the tables, where they aren't there yet.
    static void create(const std::string &url);

    /// The tables must be there; those of an earlier version are brought up to date.
    explicit PostgresStore(PostgresPool::Settings settings);

    void check() override;

    std::optional<std::string> setting(std::string_view key) override;
    void setSetting(std::string_view key, std::string_view value) override;
    std::map<std::string, std::string> settings() override;

    std::vector<Notebook> notebooks() override;
    std::optional<Notebook> notebookNamed(std::string_view name) override;
    std::optional<Notebook> notebookOfToken(const Digest &tokenHash) override;
    void addNotebook(std::string_view name, std::string_view salt, const Digest &tokenHash,
        std::chrono::sys_seconds now) override;
    void setToken(std::int64_t notebook, std::string_view salt, std::optional<Digest> tokenHash) override;
    void setQuota(std::int64_t notebook, const OwnQuota &quota) override;

    std::optional<std::int64_t> version(std::int64_t notebook) override;
    std::shared_ptr<const Document> newestDocument(std::int64_t notebook) override;
    std::shared_ptr<const Document> document(std::int64_t notebook, std::int64_t version) override;
    std::vector<VersionRecord> history(std::int64_t notebook) override;
    std::optional<VersionRecord> newestRecord(std::int64_t notebook) override;
    bool append(std::int64_t notebook, std::int64_t expected, const NewDocument &document,
        const HistoryChange &change) override;
    void drop(std::int64_t notebook, const std::vector<std::int64_t> &versions) override;
    StoreState state() override;
    void setState(StoreState state) override;
    std::unique_ptr<StoreImport> beginImport() override;

private:
    class Import;

    PostgresResult run(const PostgresStatement &statement, const auto &...values);

    const std::string m_url;
    PostgresPool m_pool;
};

} // namespace nimbrelle::server
