#include "server/support/StoreMakers.h"

#include "server/StoreFactory.h"
#include "server/support/Stage.h"

namespace nimbrelle::server {

namespace {

class SqlitePlace final : public StorePlace {
public:
    SqlitePlace() { createStore(m_directory); }
    std::unique_ptr<Store> open() const override { return openStore(m_directory); }

private:
    ScratchFolder m_folder;
    DataDirectory m_directory{m_folder.path()};
};

} // namespace

std::vector<StoreMaker> storeMakers()
{
    return {{.name = "Sqlite",
        .make = []() -> std::unique_ptr<StorePlace> { return std::make_unique<SqlitePlace>(); }}};
}

} // namespace nimbrelle::server
