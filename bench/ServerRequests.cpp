#include "ServerRequests.h"

#include <ctime>
#include <stdexcept>
#include <unistd.h>

namespace nimbrelle::bench {

using server::Reply;
using server::TlsClient;

std::string sampleBundle()
{
    std::string text = R"({"affixes":[],"deleted":[],"format":1,"grammar":[],"log":[],"notes":[],"words":[)";
    for (int word = 0; text.size() < 1'000'000; ++word) {
        text += word > 0 ? "," : "";
        text += R"({"addedAt":"2026-03-01T08:30:05Z","examples":[{"at":"2026-03-01T08:30:05Z","sentence":)"
                R"("They were reluctant to merge the branch before the release.","translation":"他们不愿意)"
                R"(在发布前合并这个分支。"}],"headword":"word)"
            + std::to_string(word)
            + R"(","lapses":0,"meaningZh":"不情愿的","phonetic":"rɪˈlʌktənt","reps":12,"stability":34.25})";
    }
    return text + "]}";
}

double processorSeconds(pid_t process)
{
    clockid_t clock{};
    timespec time{};
    if (::clock_getcpuclockid(process, &clock) != 0 || ::clock_gettime(clock, &time) != 0)
        return 0;
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

std::unique_ptr<TlsClient> connected(std::uint16_t port)
{
    for (int attempt = 0;; ++attempt) {
        try {
            return std::make_unique<TlsClient>(port);
        } catch (const std::runtime_error &) {
            if (attempt == 100)
                throw;
            ::usleep(20'000); // nginx is still starting
        }
    }
}

Reply ask(TlsClient &client, const std::string &request, int status)
{
    auto reply = client.exchange(request);
    if (reply.status != status)
        throw std::runtime_error("an answer is missing or wrong: " + std::to_string(reply.status));
    return reply;
}

std::int64_t currentVersion(TlsClient &client, const std::string &token)
{
    const auto reply = client.exchange(server::requestText("GET", "/v1/bundle", token));
    return reply.status == 200 ? std::stoll(reply.header("etag").substr(1)) : 0;
}

} // namespace nimbrelle::bench
