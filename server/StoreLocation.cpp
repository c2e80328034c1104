#include "server/StoreLocation.h"

#include "server/Failure.h"

namespace nimbrelle::server {

StoreLocation::StoreLocation(const std::string &text) : m_text(text)
{
    if (!isPostgres() && text.find("://") != std::string::npos)
        throw UsageFailure("a store is postgresql://USER@HOST/DATABASE, a data folder, or the file in it");
    if (isPostgres())
        return;
    const std::filesystem::path path(text);
    if (std::filesystem::is_directory(path))
        m_text = DataDirectory(path).database().string();
    else if (!std::filesystem::exists(path) && path.filename() != DataDirectory({}).database())
        throw UsageFailure(
            "there is no folder " + text + "; make it first, with: mkdir -m 700 '" + text + "'");
}

bool StoreLocation::isPostgres() const
{
    return m_text.starts_with("postgresql://") || m_text.starts_with("postgres://");
}

std::string StoreLocation::shown() const
{
    if (!isPostgres())
        return m_text;
    // What stands before the @ and behind the ? may hold a password, and that a ? or / of its own.
    const auto start = m_text.find("//") + 2;
    const std::string authority = m_text.substr(start, m_text.find('/', start) - start);
    const auto at = authority.rfind('@');
    if (at == std::string::npos && !authority.empty() && m_text.find('@') != std::string::npos)
        return "postgresql://...";
    const std::string rest = m_text.substr(start + (at == std::string::npos ? 0 : at + 1));
    return "postgresql://" + rest.substr(0, rest.find('?'));
}

void StoreLocation::requirePrivate() const
{
    if (!isPostgres())
        DataDirectory(std::filesystem::absolute(m_text).parent_path()).requirePrivate();
}

} // namespace nimbrelle::server
