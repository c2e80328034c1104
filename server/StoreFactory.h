#pragma once

#include "server/Store.h"
#include "server/StoreLocation.h"

namespace nimbrelle::server {

/// Makes the store, unless it is there. Throws Failure.
void createStore(const StoreLocation &location);

/// Throws Failure when init has not made one here, or when it can't be used. `connections` is how many a
/// database is asked for at most.
std::unique_ptr<Store> openStore(const StoreLocation &location, unsigned connections = 8);

} // namespace nimbrelle::server
