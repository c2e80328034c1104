#pragma once

#include "server/DataDirectory.h"
#include "server/Store.h"

namespace nimbrelle::server {

/// Makes the store of this data folder, unless it is there. Throws Failure.
void createStore(const DataDirectory &directory);

/// Throws Failure when init has not made one here, or when it can't be used.
std::unique_ptr<Store> openStore(const DataDirectory &directory);

} // namespace nimbrelle::server
