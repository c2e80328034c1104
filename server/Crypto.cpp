#include "server/Crypto.h"

#include "server/Failure.h"

#include <algorithm>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>

namespace nimbrelle::server {

namespace {

void require(int code, const char *what)
{
    if (code < 0)
        throw Failure(std::string(what) + " failed: " + gnutls_strerror(code));
}

gnutls_datum_t datum(std::string_view bytes)
{
    // The library's input type lacks const; it doesn't write here.
    auto *data = reinterpret_cast<unsigned char *>(const_cast<char *>(bytes.data()));
    return {data, static_cast<unsigned>(bytes.size())};
}

} // namespace

std::string randomBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    require(gnutls_rnd(GNUTLS_RND_KEY, bytes.data(), count), "drawing random bytes");
    return bytes;
}

Digest sha256(std::string_view bytes)
{
    Digest digest{};
    require(gnutls_hash_fast(GNUTLS_DIG_SHA256, bytes.data(), bytes.size(), digest.data()), "hashing");
    return digest;
}

Digest hmacSha256(std::string_view key, std::string_view text)
{
    Digest digest{};
    require(
        gnutls_hmac_fast(GNUTLS_MAC_SHA256, key.data(), key.size(), text.data(), text.size(), digest.data()),
        "hashing");
    return digest;
}

bool equalInConstantTime(const Digest &a, const Digest &b)
{
    return gnutls_memcmp(a.data(), b.data(), a.size()) == 0;
}

std::string_view bytesOf(const Digest &digest)
{
    return {reinterpret_cast<const char *>(digest.data()), digest.size()};
}

std::string hexText(std::string_view bytes)
{
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        const auto value = static_cast<unsigned char>(byte);
        text += digits[value >> 4];
        text += digits[value & 15];
    }
    return text;
}

std::string base64Url(std::string_view bytes)
{
    const gnutls_datum_t input = datum(bytes);
    gnutls_datum_t output{};
    require(gnutls_base64_encode2(&input, &output), "encoding");
    std::string text(reinterpret_cast<char *>(output.data), output.size);
    gnutls_free(output.data);
    std::replace(text.begin(), text.end(), '+', '-');
    std::replace(text.begin(), text.end(), '/', '_');
    std::erase(text, '=');
    return text;
}

} // namespace nimbrelle::server
