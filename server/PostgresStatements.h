#pragma once

#include "server/PostgresConnection.h"

namespace nimbrelle::server {

/// What PostgresStore asks the database.
namespace Sql {

#define NIMBRELLE_SELECT_NOTEBOOK                                                                            \
    "SELECT id, name, token_salt, token_hash, version, created_at, quota_bytes, quota_versions "             \
    "FROM nimbrelle.notebooks "

inline constexpr PostgresStatement setting{
    .name = "setting", .sql = "SELECT value FROM nimbrelle.settings WHERE key = $1"};
inline constexpr PostgresStatement setSetting{.name = "set_setting",
    .sql = "INSERT INTO nimbrelle.settings (key, value) VALUES ($1, $2) "
           "ON CONFLICT (key) DO UPDATE SET value = excluded.value"};
inline constexpr PostgresStatement notebooks{
    .name = "notebooks", .sql = NIMBRELLE_SELECT_NOTEBOOK "ORDER BY id"};
inline constexpr PostgresStatement named{
    .name = "notebook_named", .sql = NIMBRELLE_SELECT_NOTEBOOK "WHERE name = $1"};
inline constexpr PostgresStatement ofToken{
    .name = "notebook_of_token", .sql = NIMBRELLE_SELECT_NOTEBOOK "WHERE token_selector = $1"};
inline constexpr PostgresStatement addNotebook{.name = "add_notebook",
    .sql = "INSERT INTO nimbrelle.notebooks (name, created_at, token_salt, token_selector, token_hash) "
           "VALUES ($1, $2, $3, $4, $5)"};
inline constexpr PostgresStatement setToken{.name = "set_token",
    .sql =
        "UPDATE nimbrelle.notebooks SET token_salt = $2, token_selector = $3, token_hash = $4 WHERE id = $1"};
inline constexpr PostgresStatement setQuota{.name = "set_quota",
    .sql = "UPDATE nimbrelle.notebooks SET quota_bytes = $2, quota_versions = $3 WHERE id = $1"};
inline constexpr PostgresStatement version{
    .name = "version", .sql = "SELECT version FROM nimbrelle.notebooks WHERE id = $1"};
inline constexpr PostgresStatement newest{.name = "newest",
    .sql = "SELECT version, body, written_at FROM nimbrelle.versions WHERE notebook = $1 ORDER BY version "
           "DESC LIMIT 1"};
inline constexpr PostgresStatement document{.name = "document",
    .sql = "SELECT version, body, written_at FROM nimbrelle.versions WHERE notebook = $1 AND version = $2"};
inline constexpr PostgresStatement history{.name = "history",
    .sql = "SELECT version, written_at, words, bytes, before_loss::int::bigint FROM nimbrelle.versions "
           "WHERE notebook = $1 ORDER BY version"};
inline constexpr PostgresStatement newestRecord{.name = "newest_record",
    .sql = "SELECT version, written_at, words, bytes, before_loss::int::bigint FROM nimbrelle.versions "
           "WHERE notebook = $1 ORDER BY version DESC LIMIT 1"};

// Compare-and-set in one statement. A writer that meets another waits for its end at the row that is raised,
// and then finds that the version is not the expected one any more: it raises nothing, so that nothing else
// happens either.
inline constexpr PostgresStatement append{.name = "append", .sql = R"(
    WITH raised AS (
        UPDATE nimbrelle.notebooks SET version = version + 1 WHERE id = $1 AND version = $2
        RETURNING id, version
    ), stored AS (
        INSERT INTO nimbrelle.versions (notebook, version, written_at, words, bytes, body)
        SELECT id, version, $3, $4, octet_length($5::bytea), $5 FROM raised
    ), marked AS (
        UPDATE nimbrelle.versions AS kept SET before_loss = true FROM raised
        WHERE kept.notebook = raised.id AND kept.version = $6
    ), dropped AS (
        DELETE FROM nimbrelle.versions AS kept USING raised
        WHERE kept.notebook = raised.id AND kept.version = ANY (string_to_array($7, ',')::bigint[])
    )
    SELECT version FROM raised)"};

inline constexpr PostgresStatement drop{.name = "drop", .sql = R"(
    DELETE FROM nimbrelle.versions AS kept USING nimbrelle.notebooks
    WHERE notebooks.id = $1 AND kept.notebook = $1 AND kept.version < notebooks.version
        AND kept.version = ANY (string_to_array($2, ',')::bigint[]))"};

// A notebook whose newest version is not kept, or whose document has another length than was noted.
inline constexpr PostgresStatement damage{.name = "damage", .sql = R"(
    SELECT notebooks.id FROM nimbrelle.notebooks
    LEFT JOIN nimbrelle.versions ON notebook = notebooks.id AND versions.version = notebooks.version
    WHERE notebooks.version > 0 AND (body IS NULL OR octet_length(body) <> bytes)
    LIMIT 1)"};
inline constexpr PostgresStatement flushes{.name = "flushes", .sql = "SELECT current_setting('fsync')"};

inline constexpr PostgresStatement settings{
    .name = "settings", .sql = "SELECT key, value FROM nimbrelle.settings"};
inline constexpr PostgresStatement importNotebook{.name = "import_notebook",
    .sql = "INSERT INTO nimbrelle.notebooks (id, name, created_at, token_salt, token_selector, token_hash, "
           "version, quota_bytes, quota_versions) VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9)"};
inline constexpr PostgresStatement importVersion{.name = "import_version",
    .sql = "INSERT INTO nimbrelle.versions (notebook, version, written_at, words, bytes, before_loss, body) "
           "VALUES ($1, $2, $3, $4, $5, $6::bigint <> 0, $7)"};
inline constexpr const char *continueIds =
    "SELECT setval(pg_get_serial_sequence('nimbrelle.notebooks', 'id'), max(id)) "
    "FROM nimbrelle.notebooks";

inline constexpr PostgresStatement state{.name = "state",
    .sql = "SELECT tgname::text FROM pg_trigger WHERE tgname IN ('moving', 'sealed') AND tgrelid = "
           "'nimbrelle.notebooks'::regclass"};

#undef NIMBRELLE_SELECT_NOTEBOOK

} // namespace Sql

} // namespace nimbrelle::server
