#include "server/StoreLocation.h"

#include "server/Failure.h"

namespace nimbrelle::server {

StoreLocation::StoreLocation(const std::string &text) : m_text(text)
{
    if (!isPostgres() && text.find("://") != std::string::npos)
        throw UsageFailure("a store is postgresql://USER@HOST/DATABASE, a data folder, or the file in it");
    if (!isPostgres() && std::filesystem::is_directory(text))
        m_text = DataDirectory(text).database().string();
}

bool StoreLocation::isPostgres() const
{
    return m_text.starts_with("postgresql://") || m_text.starts_with("postgres://");
}

std::string StoreLocation::shown() const
{
    if (!isPostgres())
        return m_text;
    // What stands before the @ and behind the ? may hold a password.
    const auto start = m_text.find("//") + 2;
    const auto end = m_text.find_first_of('?', start);
    const std::string rest = m_text.substr(start, end - start);
    const auto at = rest.rfind('@');
    return "postgresql://" + (at == std::string::npos ? rest : rest.substr(at + 1));
}

} // namespace nimbrelle::server
