#include "server/MoveStore.h"

namespace nimbrelle::server {

namespace {

// Sealed from here on, and for good unless an exception passes.
class Seal {
public:
    explicit Seal(Store &store) : m_store(store), m_wasSealed(store.isSealed()) { m_store.setSealed(true); }
    Seal(const Seal &) = delete;
    Seal &operator=(const Seal &) = delete;
    ~Seal()
    {
        // One that was moved earlier stays as it is.
        if (m_keep || m_wasSealed)
            return;
        try {
            m_store.setSealed(false);
        } catch (const Failure &) {
            // Then the store itself fails, and says so whenever it is used.
        }
    }
    void keep() { m_keep = true; }

private:
    Store &m_store;
    const bool m_wasSealed;
    bool m_keep = false;
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
    Seal seal(from);
    if (to.notebooks().empty())
        copy(from, to);
    const auto content = compared(from, to);
    seal.keep();
    return content;
}

} // namespace nimbrelle::server
