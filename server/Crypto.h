#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace nimbrelle::server {

using Digest = std::array<unsigned char, 32>;

/// From the system's generator; throws Failure when there is none.
std::string randomBytes(std::size_t count);

Digest sha256(std::string_view bytes);
Digest hmacSha256(std::string_view key, std::string_view text);

/// Takes the same time wherever the two differ.
bool equalInConstantTime(const Digest &a, const Digest &b);

std::string_view bytesOf(const Digest &digest);
/// Absent when these bytes, as they were kept, are no digest.
std::optional<Digest> digestOf(std::string_view bytes);

/// Lower case.
std::string hexText(std::string_view bytes);

/// The URL-safe alphabet, without padding.
std::string base64Url(std::string_view bytes);

} // namespace nimbrelle::server
