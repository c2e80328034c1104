#pragma once

#include "server/support/TlsClient.h"

#include <memory>
#include <sys/types.h>

namespace nimbrelle::bench {

/// About a megabyte that looks like a notebook.
std::string sampleBundle();

/// What all threads of a process have taken so far.
double processorSeconds(pid_t process);

/// Waits while the server is still starting.
std::unique_ptr<server::TlsClient> connected(std::uint16_t port);

/// Throws when the answer has another status.
server::Reply ask(server::TlsClient &client, const std::string &request, int status);

/// The version of the document, 0 when nothing is stored.
std::int64_t currentVersion(server::TlsClient &client, const std::string &token);

} // namespace nimbrelle::bench
