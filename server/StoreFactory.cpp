#include "server/StoreFactory.h"

#include "server/SqliteStore.h"

namespace nimbrelle::server {

void createStore(const DataDirectory &directory)
{
    SqliteStore::create(directory.database());
}

std::unique_ptr<Store> openStore(const DataDirectory &directory)
{
    if (!std::filesystem::exists(directory.database()))
        throw Failure("nothing is set up in " + directory.path().string()
            + ". Do it with: nimbrelle-server init, or name the right folder with --data DIR.");
    return std::make_unique<SqliteStore>(directory.database());
}

} // namespace nimbrelle::server
