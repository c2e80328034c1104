#pragma once

#include "server/DataDirectory.h"

#include <string>

namespace nimbrelle::server {

/// What the server proves itself with: a P-256 key and a certificate signed by that key, both as PEM text.
struct Identity {
    std::string key;
    std::string certificate;

    /// Lower-case hexadecimal SHA-256 of the certificate's DER form: what a device remembers of this server.
    std::string pin() const;
};

/// Valid for fifty years: every device must be connected anew when the certificate changes.
/// `host` becomes the certificate's alternative name, a DNS name or an address.
Identity makeIdentity(const std::string &host);

/// Reads both files and checks that they are well-formed and belong together. Throws Failure.
Identity loadIdentity(const DataDirectory &directory);

} // namespace nimbrelle::server
