#include "server/SyncApi.h"

#include "server/BundleCheck.h"
#include "server/VersionedWrite.h"

#include <algorithm>

namespace nimbrelle::server {

namespace {

constexpr std::string_view pingPath = "/v1/ping";
constexpr std::string_view bundlePath = "/v1/bundle";
constexpr std::size_t cacheBytes = 64 * 1024 * 1024;

Answer refusal(unsigned status, std::string text)
{
    return {.status = status, .text = std::move(text)};
}

Answer answerFor(const StoreFailure &failure)
{
    const bool full = failure.kind() == StoreFailure::Kind::full;
    Answer answer =
        refusal(full ? 507 : 500, full ? "The server's disk is full." : "The server's store failed.");
    answer.trouble = failure.what();
    return answer;
}

template <typename Result, typename Work> Result orFailure(const Work &work)
{
    try {
        return work();
    } catch (const StoreFailure &failure) {
        return Result(answerFor(failure));
    } catch (const std::exception &error) {
        Answer answer = refusal(500, "The server failed.");
        answer.trouble = error.what();
        return Result(std::move(answer));
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
    const auto sameLetter = [](char given, char wanted) { return (given | 0x20) == (wanted | 0x20); };
    if (text.size() <= scheme.size()
        || !std::ranges::equal(text.substr(0, scheme.size()), scheme, sameLetter))
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

Answer malformedCondition()
{
    return refusal(400, "If-Match and If-None-Match take \"*\" or quoted versions, such as \"7\".");
}

} // namespace

SyncApi::SyncApi(Store &store, std::uint64_t maxBody, Now now)
    : m_store(store), m_maxBody(maxBody), m_now(std::move(now)), m_cache(cacheBytes)
{
}

bool SyncApi::knowsPath(std::string_view path)
{
    return path == pingPath || path == bundlePath;
}

Admission SyncApi::admit(const RequestHead &head)
{
    struct Outcome : Admission {
        Outcome(Admission admission) : Admission(std::move(admission)) { }
        explicit Outcome(Answer answer) : Admission{"", std::move(answer)} { }
    };
    return orFailure<Outcome>([&] { return Outcome(admitKnown(head)); });
}

Admission SyncApi::admitKnown(const RequestHead &head)
{
    if (!knowsPath(head.path))
        return {"", refusal(404, "There is nothing here. The paths are /v1/ping and /v1/bundle.")};
    const bool writes = head.path == bundlePath && head.method == "PUT";
    if (!isRead(head.method) && !writes) {
        Answer answer = refusal(405, "This method has no meaning here.");
        answer.allow = head.path == bundlePath ? "GET, HEAD, PUT" : "GET, HEAD";
        return {"", std::move(answer)};
    }
    const auto token = bearerToken(head.authorization);
    const auto notebook = token ? m_store.notebookOfToken(sha256(*token)) : std::nullopt;
    if (!notebook)
        return {"", refusal(401, "The token is wrong or was revoked.")};
    if (head.path == pingPath)
        return {notebook->name, Answer{.text = "This is nimbrelle-server, and the token is right."}};
    if (writes)
        return {notebook->name, admitWrite(head, *notebook)};
    return {notebook->name, read(head, *notebook)};
}

Answer SyncApi::read(const RequestHead &head, const Notebook &notebook)
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
    auto document = current(notebook);
    if (!document)
        return refusal(404, "Nothing is stored yet.");
    return {.status = 200, .version = document->version, .document = document};
}

std::shared_ptr<const Document> SyncApi::current(const Notebook &notebook)
{
    if (auto cached = m_cache.find(notebook.id, notebook.version))
        return cached;
    auto document = m_store.newestDocument(notebook.id);
    if (document)
        m_cache.put(notebook.id, document);
    return document;
}

std::variant<Answer, AdmittedWrite> SyncApi::admitWrite(const RequestHead &head, const Notebook &notebook)
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
    return AdmittedWrite{notebook.id, std::move(*conditions)};
}

Answer SyncApi::finish(const AdmittedWrite &write, std::string body)
{
    return orFailure<Answer>([&] { return store(write, std::move(body)); });
}

Answer SyncApi::store(const AdmittedWrite &write, std::string body)
{
    const auto words = countWords(body);
    if (!words)
        return refusal(400, "The body is not a JSON object with a list of words.");
    const NewDocument document{.body = body, .words = *words, .writtenAt = m_now()};
    const auto version = writeVersion(m_store, write.notebook, document,
        [&](std::int64_t current) { return write.conditions.allowWriteOver(current); });
    if (!version)
        return refusal(412, "Another version is stored.");
    m_cache.put(write.notebook, std::make_shared<const Document>(Document{*version, std::move(body)}));
    return {.status = 200, .version = version};
}

} // namespace nimbrelle::server
