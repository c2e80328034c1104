#pragma once

#include "server/Store.h"

#include <filesystem>

namespace nimbrelle::server {

/// One SQLite file in WAL mode, flushed at every commit. Reads don't wait for a write that is being flushed.
class SqliteStore final : public Store {
public:
    /// Makes the file and its tables, where they aren't there yet.
    static void create(const std::filesystem::path &file);

    /// The file must be there.
    explicit SqliteStore(const std::filesystem::path &file);
    ~SqliteStore() override;

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
    struct Reader;
    struct Writer;
    class Import;

    template <typename Work> auto reading(const Work &work);
    template <typename Work> auto writing(const Work &work);

    std::filesystem::path m_file;
    std::unique_ptr<Reader> m_reader;
    std::unique_ptr<Writer> m_writer;
};

} // namespace nimbrelle::server
