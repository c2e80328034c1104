#include "server/support/Stage.h"

#include "server/StoreFactory.h"

#include <cstdlib>
#include <stdexcept>

namespace nimbrelle::server {

ScratchFolder::ScratchFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "nimbrelle-server-XXXXXX").string();
    if (!::mkdtemp(name.data()))
        throw std::runtime_error("no scratch folder");
    m_path = name;
}

ScratchFolder::~ScratchFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string documentOf(int words, const std::string &mark, std::size_t padding)
{
    std::string text = R"({"format":1,"log":[")" + mark + std::string(padding, 'x') + R"("],"words":[)";
    for (int word = 0; word < words; ++word)
        text += std::string(word > 0 ? "," : "") + R"({"word":")" + std::to_string(word) + R"("})";
    return text + "]}";
}

Stage::Stage(const ServerLimits &limits)
{
    // One key for all tests of a run, as making one takes a while.
    static const Identity identity = makeIdentity("localhost");
    const DataDirectory directory(m_folder.path());
    createStore(directory);
    m_store = openStore(directory);
    m_store->addNotebook("first", "salt", sha256(token), {});
    const auto log = [this](const std::string &line) {
        const std::lock_guard held(m_logMutex);
        m_log += line + '\n';
    };
    m_server = std::make_unique<HttpServer>(
        std::make_unique<ListeningSocket>("127.0.0.1", 0), identity, *m_store, limits, HttpServer::Log{log});
}

std::string Stage::log()
{
    const std::lock_guard held(m_logMutex);
    return m_log;
}

Reply Stage::request(const std::string &text, const std::string &from)
{
    TlsClient client(port(), from);
    return client.exchange(text).value_or(Reply{});
}

Reply Stage::get(const std::string &more)
{
    return request(requestText("GET", "/v1/bundle", token, more));
}

Reply Stage::put(const std::string &condition, const std::string &body)
{
    return request(requestText("PUT", "/v1/bundle", token, "If-Match: " + condition + "\r\n", body));
}

} // namespace nimbrelle::server
