#pragma once

#include "practice/Failure.h"
#include "practice/Lexicon.h"

namespace nimbrelle::practice {

inline constexpr size_t largestBody = size_t{1024} * 1024;

/// An HTTP request as the server took it in.
struct Request {
    std::string method;
    std::string path;
    std::string authorization; ///< the header's value, empty when it is missing
    std::string body;
    bool bodyTooLarge = false; ///< the body was longer than `largestBody` and is not here
};

/// What to send, and how. The server waits between `parts`, the events of a stream; a plain answer has one.
struct Reply {
    unsigned status = 200;
    std::string contentType = "application/json; charset=utf-8";
    std::vector<std::string> parts;
    bool stream = false;
    bool waitsFirst = false; ///< several seconds pass before the answer
    bool breaksOff = false; ///< the connection ends half-way through the answer
    std::string allow; ///< value of the Allow header, empty for none
};

/// `always` is the failure for every request; none leaves it to each request's key.
Reply replyTo(const Request &request, const Lexicon &lexicon, Failure always);

} // namespace nimbrelle::practice
