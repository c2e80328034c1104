#pragma once

#include "server/PostgresConnection.h"

namespace nimbrelle::server {

/// Our tables, in a schema of their own, so that the database may hold other things as well. Each throws
/// StoreFailure.
namespace PostgresSchema {

/// Makes the tables where they aren't there yet.
void create(PostgresConnection &connection);

/// Brings tables of an earlier version up to date; refuses a database without them and a newer version's.
void require(PostgresConnection &connection);

} // namespace PostgresSchema

} // namespace nimbrelle::server
