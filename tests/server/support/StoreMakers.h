#pragma once

#include "server/Store.h"

#include <ostream>

namespace nimbrelle::server {

/// An empty store somewhere, gone with this object.
class StorePlace {
public:
    virtual ~StorePlace() = default;
    /// Another handle on the same data, as another process has it.
    virtual std::unique_ptr<Store> open() const = 0;
};

struct StoreMaker {
    const char *name;
    std::unique_ptr<StorePlace> (*make)();
};

inline void PrintTo(const StoreMaker &maker, std::ostream *out)
{
    *out << maker.name;
}

/// Every store that a server can be pointed at.
std::vector<StoreMaker> storeMakers();

} // namespace nimbrelle::server
