#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace nimbrelle::server {

/// The folder with all that the server keeps: mode 0700, its files 0600.
class DataDirectory {
public:
    explicit DataDirectory(std::filesystem::path path);

    /// NIMBRELLE_SERVER_DATA, else nimbrelle-server in the user's data folder.
    static std::filesystem::path defaultPath();

    const std::filesystem::path &path() const { return m_path; }
    std::filesystem::path database() const { return m_path / "notebooks.db"; }
    std::filesystem::path key() const { return m_path / "server.key"; }
    std::filesystem::path certificate() const { return m_path / "server.crt"; }
    /// From this and a notebook's salt its token can be worked out again, so that a code can be printed
    /// twice.
    std::filesystem::path tokenSecret() const { return m_path / "token.secret"; }

    void create() const;

    /// Throws Failure when the folder is missing or when others on this machine could read what is in it.
    void requirePrivate() const;

private:
    std::filesystem::path m_path;
};

/// Throws Failure with the file's name and the system's reason.
std::string readFile(const std::filesystem::path &path);

/// Mode 0600, whole or not at all, flushed to disk. Throws Failure.
void writePrivateFile(const std::filesystem::path &path, std::string_view bytes);

} // namespace nimbrelle::server
