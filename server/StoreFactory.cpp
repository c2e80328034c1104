#include "server/StoreFactory.h"

#include "server/PostgresStore.h"
#include "server/SqliteStore.h"

namespace nimbrelle::server {

void createStore(const StoreLocation &location)
{
    if (location.isPostgres())
        PostgresStore::create(location.text());
    else
        SqliteStore::create(location.text());
}

std::unique_ptr<Store> openStore(const StoreLocation &location, unsigned connections)
{
    if (location.isPostgres())
        return std::make_unique<PostgresStore>(
            PostgresPool::Settings{.url = location.text(), .connections = connections});
    const std::filesystem::path file = location.text();
    if (!std::filesystem::exists(file))
        throw Failure("nothing is set up in " + file.parent_path().string()
            + ". Do it with: nimbrelle-server init, or name the right folder with --data DIR.");
    return std::make_unique<SqliteStore>(file);
}

} // namespace nimbrelle::server
