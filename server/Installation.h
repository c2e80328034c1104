#pragma once

#include "server/DataDirectory.h"
#include "server/Options.h"

namespace nimbrelle::server {

/// The data folder and its store, checked. Throws Failure.
struct Installation {
    explicit Installation(const Options &options);

    DataDirectory directory;
    std::unique_ptr<Store> store;
};

/// The one of this name, or without a name the only one. Throws Failure.
Notebook selectedNotebook(Store &store, const std::string &name);

} // namespace nimbrelle::server
