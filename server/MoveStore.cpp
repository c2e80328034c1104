#include "server/MoveStore.h"

namespace nimbrelle::server {

namespace {

// The store takes no changes from here on; unless it was moved in the end, it takes them again. One that was
// moved earlier stays as it is.
class Move {
public:
    explicit Move(Store &store) : m_store(store), m_isMoved(store.state() == StoreState::moved)
    {
        if (!m_isMoved)
            m_store.setState(StoreState::moving);
    }
    Move(const Move &) = delete;
    Move &operator=(const Move &) = delete;
    ~Move()
    {
        if (!m_isMoved)
            abandonMove(m_store);
    }
    void complete()
    {
        if (m_isMoved)
            return;
        if (m_store.state() != StoreState::moving)
            throw Failure("the store took changes again meanwhile, as another move of it ended; try again");
        m_store.setState(StoreState::moved);
        m_isMoved = true;
    }

private:
    Store &m_store;
    bool m_isMoved;
};

std::shared_ptr<const Document> requireDocument(Store &store, const Notebook &notebook, std::int64_t version)
{
    if (auto document = store.document(notebook.id, version))
        return document;
    throw Failure("version " + std::to_string(version) + " of \"" + notebook.name + "\" can't be read");
}

void copy(Store &from, Store &to)
{
    const auto import = to.beginImport();
    for (const auto &[key, value] : from.settings())
        import->addSetting(key, value);
    for (const Notebook &notebook : from.notebooks()) {
        import->addNotebook(notebook);
        for (const VersionRecord &record : from.history(notebook.id))
            import->addVersion(notebook.id, record, requireDocument(from, notebook, record.version)->body);
    }
    import->commit();
}

void requireSameVersion(Store &from, Store &to, const Notebook &notebook, std::int64_t version)
{
    if (requireDocument(from, notebook, version)->body != requireDocument(to, notebook, version)->body)
        throw Failure(
            "version " + std::to_string(version) + " of \"" + notebook.name + "\" differs in the two stores");
}

MovedContent compared(Store &from, Store &to)
{
    const auto notebooks = from.notebooks();
    if (from.settings() != to.settings() || notebooks != to.notebooks())
        throw Failure("the store to move to is not empty, and holds something else");
    MovedContent content{.notebooks = notebooks.size()};
    for (const Notebook &notebook : notebooks) {
        const auto history = from.history(notebook.id);
        if (history != to.history(notebook.id))
            throw Failure("the histories of \"" + notebook.name + "\" differ in the two stores");
        for (const VersionRecord &record : history) {
            requireSameVersion(from, to, notebook, record.version);
            content.bytes += record.bytes;
        }
        content.versions += history.size();
    }
    return content;
}

} // namespace

MovedContent moveStore(Store &from, Store &to)
{
    Move move(from);
    // By now this is so for the same store as well, however the two are named.
    if (to.state() != StoreState::open)
        throw Failure("the store to move to is the same one, or was itself moved; name an empty one");
    if (to.notebooks().empty())
        copy(from, to);
    const auto content = compared(from, to);
    move.complete();
    return content;
}

void abandonMove(Store &from) noexcept
{
    try {
        if (from.state() == StoreState::moving)
            from.setState(StoreState::open);
    } catch (const Failure &) {
        // Then the store itself fails, and says so whenever it is used.
    }
}

} // namespace nimbrelle::server
