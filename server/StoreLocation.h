#pragma once

#include "server/DataDirectory.h"

namespace nimbrelle::server {

/// Where a store is: a PostgreSQL database, or an SQLite file.
class StoreLocation {
public:
    /// The file in a data folder.
    StoreLocation(const DataDirectory &directory) : m_text(directory.database().string()) { }
    /// As a person gives it: postgresql://…, or a file, or a data folder. Throws UsageFailure.
    explicit StoreLocation(const std::string &text);

    bool isPostgres() const;
    const std::string &text() const { return m_text; }
    /// Without a password, for messages.
    std::string shown() const;
    /// Throws Failure when others on this machine could read a file's folder.
    void requirePrivate() const;

private:
    std::string m_text;
};

} // namespace nimbrelle::server
