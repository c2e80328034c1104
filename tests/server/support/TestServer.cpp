#include "server/support/TestServer.h"

#include "server/StoreFactory.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace nimbrelle::server {

TemporaryDirectory::TemporaryDirectory()
{
    std::string name = (std::filesystem::temp_directory_path() / "nimbrelle-server-XXXXXX").string();
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("no temporary directory");
    m_path = name;
}

TemporaryDirectory::~TemporaryDirectory()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string documentOf(int words, const std::string &label, std::size_t padding)
{
    std::string text = R"({"format":1,"log":[")" + label + std::string(padding, 'x') + R"("],"words":[)";
    for (int word = 0; word < words; ++word)
        text += std::string(word > 0 ? "," : "") + R"({"word":")" + std::to_string(word) + R"("})";
    return text + "]}";
}

bool eventually(const std::function<bool()> &isSo)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

TestServer::TestServer(const ServerLimits &limits)
{
    // One key for all tests of a run, as making one takes a while.
    static const Identity identity = makeIdentity("localhost");
    const DataDirectory directory(m_directory.path());
    createStore(directory);
    m_store = openStore(directory);
    m_store->addNotebook("first", "salt", sha256(token), {});
    const auto log = [this](const std::string &line) {
        const std::lock_guard lock(m_logMutex);
        m_log += line + '\n';
    };
    m_http = std::make_unique<HttpServer>(std::make_unique<ListeningSocket>("127.0.0.1", 0), identity,
        *m_store, limits, HttpServer::Log{.write = log});
}

void TestServer::breakStore()
{
    SQLite::Database(DataDirectory(m_directory.path()).database().string(), SQLite::OPEN_READWRITE)
        .exec("ALTER TABLE notebooks RENAME TO elsewhere");
}

std::string TestServer::log()
{
    const std::lock_guard lock(m_logMutex);
    return m_log;
}

std::string TestServer::bundleRequest(const char *method, const std::string &headers, std::string_view body)
{
    return requestText(method, "/v1/bundle", token, headers, body);
}

Reply TestServer::request(const std::string &text, const std::string &from)
{
    return TlsClient(port(), from).exchange(text);
}

Reply TestServer::get(const std::string &headers)
{
    return request(bundleRequest("GET", headers));
}

Reply TestServer::put(const std::string &ifMatch, const std::string &body)
{
    return request(bundleRequest("PUT", "If-Match: " + ifMatch + "\r\n", body));
}

} // namespace nimbrelle::server
