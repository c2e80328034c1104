#pragma once

#include "practice/Routing.h"

#include <chrono>
#include <memory>
#include <stdexcept>

namespace nimbrelle::practice {

struct ServerError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ServerOptions {
    uint16_t port = 0; ///< 0 takes a free one
    std::chrono::milliseconds delay{20}; ///< between the pieces of a stream
    std::chrono::milliseconds slowness{5000}; ///< before an answer that is told to be slow
    Failure failure = Failure::none;
};

/// Listens on 127.0.0.1 from its making to its end, on threads of its own. Ending it breaks off what still
/// streams. Throws ServerError when it cannot listen.
class Server {
public:
    Server(const Lexicon &lexicon, ServerOptions options);
    ~Server();
    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    uint16_t port() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace nimbrelle::practice
