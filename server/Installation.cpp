#include "server/Installation.h"

#include "server/Commands.h"
#include "server/StoreFactory.h"

namespace nimbrelle::server {

Installation::Installation(const Options &options) : directory(options.data)
{
    directory.requirePrivate();
    store = openStore(storeLocation(options));
}

Notebook selectedNotebook(Store &store, const std::string &name)
{
    if (!name.empty()) {
        if (const auto notebook = store.notebookNamed(name))
            return *notebook;
        throw Failure("there is no notebook \"" + name + "\". See: nimbrelle-server token list");
    }
    const auto all = store.notebooks();
    if (all.size() == 1)
        return all.front();
    throw UsageFailure(all.empty()
            ? "there is no notebook yet; make one with: nimbrelle-server token add NAME"
            : "there are several notebooks; say which. See: nimbrelle-server token list");
}

} // namespace nimbrelle::server
