#pragma once

#include "server/BodyBudget.h"
#include "server/Conditions.h"
#include "server/DocumentCache.h"
#include "server/Store.h"

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

struct Response {
    unsigned status = 200;
    std::optional<std::int64_t> version; ///< becomes the ETag
    std::shared_ptr<const Document> document; ///< the body; else `text` is
    std::string text; ///< a line for a person; may be empty
    std::string allow; ///< the methods, with 405
    std::string errorDetail; ///< for the log
    bool storeFailed = false;
};

/// A write whose body is awaited.
struct PendingWrite {
    std::int64_t notebook = 0;
    Conditions conditions;
    Quota quota;
};

/// What a request comes to before its body.
struct HeadResult {
    std::string notebookName; ///< empty when no token was right
    std::variant<Response, PendingWrite> next;
};

/// The protocol without HTTP's transport. Calls may come from any thread; none throws.
class SyncApi {
public:
    /// What is kept ready takes a quarter of the budget at most, and gives way to what is read.
    SyncApi(Store &store, BodyBudget &budget, std::uint64_t maxBody);

    HeadResult handleHead(const RequestHead &head);
    Response handleBody(const PendingWrite &write, HeldBytes body);

    /// A path that the log may show; another path could hold a secret.
    static bool knowsPath(std::string_view path);

private:
    HeadResult route(const RequestHead &head);
    Response read(const RequestHead &head, const Notebook &notebook);
    std::variant<Response, PendingWrite> beginWrite(const RequestHead &head, const Notebook &notebook);
    Response store(const PendingWrite &write, HeldBytes body);
    Response sendNewest(const Notebook &notebook);
    bool reserve(BodyBudget::Reservation &reservation, std::uint64_t bytes);

    Store &m_store;
    BodyBudget &m_budget;
    const std::uint64_t m_maxBody;
    DocumentCache m_cache;
};

} // namespace nimbrelle::server
