#pragma once

#include <stdexcept>
#include <string>

namespace nimbrelle::server {

/// Ends a command. The text is one line for the person at the terminal and says what to do.
class Failure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The command itself was wrong: exit code 2.
class UsageFailure : public Failure {
public:
    using Failure::Failure;
};

} // namespace nimbrelle::server
