#include "server/DataDirectory.h"

#include "server/Failure.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace nimbrelle::server {

namespace {

constexpr mode_t accessForOthers = S_IRWXG | S_IRWXO;

[[noreturn]] void throwSystemError(const std::filesystem::path &path, const char *what)
{
    const std::string reason = std::strerror(errno);
    throw Failure("cannot " + std::string(what) + " " + path.string() + ": " + reason
        + ". Check that it belongs to the user who runs this command.");
}

class File {
public:
    File(const std::filesystem::path &path, int flags, mode_t mode = 0)
        : m_descriptor(::open(path.c_str(), flags | O_CLOEXEC, mode))
    {
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;
    ~File()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
    }
    bool isOpen() const { return m_descriptor >= 0; }
    int descriptor() const { return m_descriptor; }

private:
    int m_descriptor;
};

void writeAll(const File &file, std::string_view bytes, const std::filesystem::path &path)
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(file.descriptor(), bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            throwSystemError(path, "write");
        if (written > 0)
            bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    if (::fsync(file.descriptor()) != 0)
        throwSystemError(path, "flush");
}

void requireMode(const std::filesystem::path &path, const char *mode)
{
    struct stat status { };
    if (::stat(path.c_str(), &status) == 0 && (status.st_mode & accessForOthers) != 0)
        throw Failure(path.string() + " is open to other users of this machine. Close it with: chmod " + mode
            + " '" + path.string() + "'");
}

} // namespace

DataDirectory::DataDirectory(std::filesystem::path path) : m_path(std::move(path)) { }

std::filesystem::path DataDirectory::defaultPath()
{
    const auto from = [](const char *name) {
        const char *value = std::getenv(name);
        return std::filesystem::path(value ? value : "");
    };
    if (const auto given = from("NIMBRELLE_SERVER_DATA"); !given.empty())
        return given;
    if (const auto data = from("XDG_DATA_HOME"); data.is_absolute())
        return data / "nimbrelle-server";
    if (const auto home = from("HOME"); !home.empty())
        return home / ".local/share/nimbrelle-server";
    throw UsageFailure("no home folder is known; say where the data is with --data DIR");
}

void DataDirectory::create() const
{
    std::error_code error;
    if (!m_path.parent_path().empty())
        std::filesystem::create_directories(m_path.parent_path(), error);
    if (::mkdir(m_path.c_str(), 0700) != 0 && errno != EEXIST)
        throwSystemError(m_path, "create");
    requirePrivate();
}

void DataDirectory::requirePrivate() const
{
    struct stat status { };
    if (::stat(m_path.c_str(), &status) != 0) {
        if (errno == ENOENT)
            throw Failure("there is no data folder " + m_path.string()
                + ". Make one with: nimbrelle-server init, or name the right one with --data DIR.");
        throwSystemError(m_path, "look at");
    }
    if (!S_ISDIR(status.st_mode))
        throw Failure(m_path.string() + " is not a folder; name another one with --data DIR.");
    if (::access(m_path.c_str(), R_OK | W_OK | X_OK) != 0)
        throwSystemError(m_path, "use the data folder");
    requireMode(m_path, "700");
    for (const auto &file : {key(), tokenSecret(), database()})
        requireMode(file, "600");
}

std::string readFile(const std::filesystem::path &path)
{
    const File file(path, O_RDONLY);
    if (!file.isOpen())
        throwSystemError(path, "read");
    std::string bytes;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = ::read(file.descriptor(), piece.data(), piece.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throwSystemError(path, "read");
        if (count == 0)
            return bytes;
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    }
}

void writePrivateFile(const std::filesystem::path &path, std::string_view bytes)
{
    auto temporary = path;
    temporary += "." + std::to_string(::getpid()) + ".tmp";
    ::unlink(temporary.c_str());
    {
        const File file(temporary, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
        if (!file.isOpen())
            throwSystemError(temporary, "create");
        writeAll(file, bytes, temporary);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0)
        throwSystemError(path, "replace");
    const File directory(path.parent_path(), O_RDONLY | O_DIRECTORY);
    if (directory.isOpen())
        ::fsync(directory.descriptor());
}

} // namespace nimbrelle::server
