#pragma once

#include "server/Conditions.h"
#include "server/DocumentCache.h"
#include "server/Store.h"

#include <functional>
#include <variant>

namespace nimbrelle::server {

/// What a request says before its body.
struct RequestHead {
    std::string method;
    std::string path; ///< decoded, without the query
    std::optional<std::string> authorization;
    std::optional<std::string> ifMatch; ///< several lines joined with a comma
    std::optional<std::string> ifNoneMatch;
    std::optional<std::uint64_t> contentLength;
};

struct Answer {
    unsigned status = 200;
    std::optional<std::int64_t> version; ///< becomes the ETag
    std::shared_ptr<const Document> document; ///< the body; else `text` is
    std::string text; ///< a line for a person; may be empty
    std::string allow; ///< the methods, with 405
    std::string trouble; ///< for the log of the server's keeper
};

/// A write that may send its body.
struct AdmittedWrite {
    std::int64_t notebook = 0;
    Conditions conditions;
};

/// What became of a head: an answer, or a write whose body is awaited.
struct Admission {
    std::string notebookName; ///< empty when no token was right
    std::variant<Answer, AdmittedWrite> next;
};

/// The conversation without the wire. Calls may come from any thread; none throws.
class SyncApi {
public:
    using Now = std::function<std::chrono::sys_seconds()>;
    SyncApi(Store &store, std::uint64_t maxBody, Now now);

    Admission admit(const RequestHead &head);
    Answer finish(const AdmittedWrite &write, std::string body);

    /// A path that the log may show; another path could hold a secret.
    static bool knowsPath(std::string_view path);

private:
    Admission admitKnown(const RequestHead &head);
    Answer read(const RequestHead &head, const Notebook &notebook);
    std::variant<Answer, AdmittedWrite> admitWrite(const RequestHead &head, const Notebook &notebook);
    Answer store(const AdmittedWrite &write, std::string body);
    std::shared_ptr<const Document> current(const Notebook &notebook);

    Store &m_store;
    const std::uint64_t m_maxBody;
    const Now m_now;
    DocumentCache m_cache;
};

} // namespace nimbrelle::server
