#pragma once

#include "server/Failure.h"

#include <gnutls/gnutls.h>
#include <string_view>

namespace nimbrelle::server {

/// Throws Failure when a GnuTLS call returned an error.
inline void requireGnuTls(int code, const std::string &what)
{
    if (code < 0)
        throw Failure(what + ": " + gnutls_strerror(code));
}

/// A view for GnuTLS to read; its input type lacks const.
inline gnutls_datum_t datum(std::string_view bytes)
{
    auto *data = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
    return {.data = data, .size = static_cast<unsigned>(bytes.size())};
}

/// Copies what GnuTLS allocated, and frees it.
inline std::string takeText(gnutls_datum_t &output)
{
    std::string text(reinterpret_cast<char *>(output.data), output.size);
    gnutls_free(output.data);
    return text;
}

} // namespace nimbrelle::server
