#include "server/SyncApi.h"

#include "server/BundleCheck.h"
#include "server/Clock.h"
#include "server/VersionedWrite.h"

#include <algorithm>
#include <strings.h>

namespace nimbrelle::server {

namespace {

constexpr std::string_view pingPath = "/v1/ping";
constexpr std::string_view bundlePath = "/v1/bundle";
constexpr std::uint64_t maxCacheBytes = 64UL * 1024 * 1024;

constexpr const char *quotaUsed = "The notebook's quota is used up; its operator can raise it.";
constexpr const char *tooMuch = "Too much is under way; try again later.";

Response refusal(unsigned status, std::string text)
{
    return {.status = status, .text = std::move(text)};
}

Response storeFailureResponse(const StoreFailure &failure)
{
    const auto response = [&](unsigned status, const char *text) {
        return Response{.status = status, .text = text, .errorDetail = failure.what(), .storeFailed = true};
    };
    switch (failure.kind()) {
    case StoreFailure::Kind::full:
        return response(507, "The server's disk is full.");
    case StoreFailure::Kind::unavailable:
        return response(503, "The server's database is away; try again later.");
    default:
        return response(500, "The server's store failed.");
    }
}

// What to say of the exception that is being handled.
Response failureResponse()
{
    try {
        throw;
    } catch (const StoreFailure &failure) {
        return storeFailureResponse(failure);
    } catch (const QuotaExceeded &) {
        return refusal(507, quotaUsed);
    } catch (const std::exception &error) {
        return {.status = 500, .text = "The server failed.", .errorDetail = error.what()};
    }
}

bool isRead(std::string_view method)
{
    return method == "GET" || method == "HEAD";
}

std::optional<std::string_view> bearerToken(const std::optional<std::string> &authorization)
{
    constexpr std::string_view scheme = "bearer ";
    const std::string_view text = authorization ? std::string_view(*authorization) : "";
    if (text.size() <= scheme.size() || ::strncasecmp(text.data(), scheme.data(), scheme.size()) != 0)
        return std::nullopt;
    const auto start = text.find_first_not_of(' ', scheme.size());
    return start == std::string_view::npos ? std::nullopt : std::optional(text.substr(start));
}

// False when a header is there and malformed.
bool readTags(const std::optional<std::string> &header, std::optional<EntityTags> &tags)
{
    if (header)
        tags = EntityTags::parse(*header);
    return !header || tags.has_value();
}

std::optional<Conditions> conditionsOf(const RequestHead &head)
{
    Conditions conditions;
    const bool wellFormed =
        readTags(head.ifMatch, conditions.ifMatch) && readTags(head.ifNoneMatch, conditions.ifNoneMatch);
    return wellFormed ? std::optional(conditions) : std::nullopt;
}

Response malformedCondition()
{
    return refusal(400, "If-Match and If-None-Match take \"*\" or quoted versions, such as \"7\".");
}

} // namespace

SyncApi::SyncApi(Store &store, BodyBudget &budget, std::uint64_t maxBody)
    : m_store(store)
    , m_budget(budget)
    , m_maxBody(maxBody)
    , m_cache(std::min(maxCacheBytes, budget.limit() / 4))
{
}

bool SyncApi::knowsPath(std::string_view path)
{
    return path == pingPath || path == bundlePath;
}

HeadResult SyncApi::handleHead(const RequestHead &head)
{
    try {
        return route(head);
    } catch (const std::exception &) {
        return {.next = failureResponse()};
    }
}

HeadResult SyncApi::route(const RequestHead &head)
{
    if (!knowsPath(head.path))
        return {.next = refusal(404, "There is nothing here. The paths are /v1/ping and /v1/bundle.")};
    const bool writes = head.path == bundlePath && head.method == "PUT";
    if (!isRead(head.method) && !writes)
        return {.next = Response{.status = 405,
                    .text = "This method has no meaning here.",
                    .allow = head.path == bundlePath ? "GET, HEAD, PUT" : "GET, HEAD"}};
    const auto token = bearerToken(head.authorization);
    const auto notebook = token ? m_store.notebookOfToken(sha256(*token)) : std::nullopt;
    if (!notebook)
        return {.next = refusal(401, "The token is wrong or was revoked.")};
    HeadResult result{.notebookName = notebook->name};
    if (head.path == pingPath)
        result.next = Response{.text = "This is nimbrelle-server, and the token is right."};
    else if (writes)
        result.next = beginWrite(head, *notebook);
    else
        result.next = read(head, *notebook);
    return result;
}

Response SyncApi::read(const RequestHead &head, const Notebook &notebook)
{
    const auto conditions = conditionsOf(head);
    if (!conditions)
        return malformedCondition();
    if (notebook.version == 0)
        return refusal(404, "Nothing is stored yet.");
    if (conditions->ifMatch && !conditions->ifMatch->matchStrongly(notebook.version))
        return refusal(412, "Another version is stored.");
    if (conditions->ifNoneMatch && conditions->ifNoneMatch->matchWeakly(notebook.version))
        return {.status = 304, .version = notebook.version};
    return sendNewest(notebook);
}

Response SyncApi::sendNewest(const Notebook &notebook)
{
    const auto newest = m_store.newestRecord(notebook.id);
    auto document = newest ? m_cache.find(notebook.id, *newest) : nullptr;
    if (!document) {
        // Before it is read, and again with its true length, for it may have been replaced in between.
        BodyBudget::Reservation reservation(m_budget);
        if (!reserve(reservation, newest ? static_cast<std::uint64_t>(newest->bytes) : 0))
            return refusal(503, tooMuch);
        document = m_store.newestDocument(notebook.id);
        if (!document)
            return refusal(404, "Nothing is stored yet.");
        if (!reserve(reservation, document->body.size()))
            return refusal(503, tooMuch);
        document = heldDocument(std::move(document), std::move(reservation));
        m_cache.put(notebook.id, document);
    }
    return {.status = 200, .version = document->version, .document = document};
}

// What is only kept ready makes room.
bool SyncApi::reserve(BodyBudget::Reservation &reservation, std::uint64_t bytes)
{
    if (reservation.growTo(bytes))
        return true;
    m_cache.clear();
    return reservation.growTo(bytes);
}

std::variant<Response, PendingWrite> SyncApi::beginWrite(const RequestHead &head, const Notebook &notebook)
{
    if (head.contentLength.value_or(0) > m_maxBody)
        return refusal(
            413, "The body is longer than the " + std::to_string(m_maxBody) + " bytes allowed here.");
    auto conditions = conditionsOf(head);
    if (!conditions)
        return malformedCondition();
    if (conditions->isEmpty())
        return refusal(
            428, "A write needs If-Match with the version it is based on; \"0\" when there is none.");
    const Quota quota = quotaOf(m_store, notebook);
    if (quota.bytes > 0 && std::cmp_greater(head.contentLength.value_or(0), quota.bytes))
        return refusal(507, quotaUsed);
    return PendingWrite{.notebook = notebook.id, .conditions = std::move(*conditions), .quota = quota};
}

Response SyncApi::handleBody(const PendingWrite &write, HeldBytes body)
{
    try {
        return store(write, std::move(body));
    } catch (const std::exception &) {
        return failureResponse();
    }
}

Response SyncApi::store(const PendingWrite &write, HeldBytes body)
{
    const auto words = countWords(body.bytes);
    if (!words)
        return refusal(400, "The body is not a JSON object with a list of words.");
    const NewDocument document{.body = body.bytes, .words = *words, .writtenAt = now()};
    const auto version = writeVersion(
        m_store, write.notebook, document,
        [&](std::int64_t current) { return write.conditions.allowWriteOver(current); }, write.quota);
    if (!version)
        return refusal(412, "Another version is stored.");
    auto written = std::make_shared<const Document>(
        Document{.version = *version, .writtenAt = document.writtenAt, .body = std::move(body.bytes)});
    m_cache.put(write.notebook, heldDocument(std::move(written), std::move(body.reservation)));
    return {.status = 200, .version = version};
}

} // namespace nimbrelle::server
