#include "server/Crypto.h"

#include "server/GnuTls.h"

#include <algorithm>
#include <gnutls/crypto.h>

namespace nimbrelle::server {

std::string randomBytes(std::size_t count)
{
    std::string bytes(count, '\0');
    requireGnuTls(gnutls_rnd(GNUTLS_RND_KEY, bytes.data(), count), "drawing random bytes failed");
    return bytes;
}

Digest sha256(std::string_view bytes)
{
    Digest digest{};
    requireGnuTls(
        gnutls_hash_fast(GNUTLS_DIG_SHA256, bytes.data(), bytes.size(), digest.data()), "hashing failed");
    return digest;
}

Digest hmacSha256(std::string_view key, std::string_view text)
{
    Digest digest{};
    requireGnuTls(
        gnutls_hmac_fast(GNUTLS_MAC_SHA256, key.data(), key.size(), text.data(), text.size(), digest.data()),
        "hashing failed");
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

std::optional<Digest> digestOf(std::string_view bytes)
{
    Digest digest{};
    if (bytes.size() != digest.size())
        return std::nullopt;
    std::copy(bytes.begin(), bytes.end(), digest.begin());
    return digest;
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
    requireGnuTls(gnutls_base64_encode2(&input, &output), "encoding failed");
    std::string text = takeText(output);
    std::replace(text.begin(), text.end(), '+', '-');
    std::replace(text.begin(), text.end(), '/', '_');
    std::erase(text, '=');
    return text;
}

} // namespace nimbrelle::server
