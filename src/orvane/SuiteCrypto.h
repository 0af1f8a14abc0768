#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// Raw bytes of keys, nonces, salts and digests.
using Bytes = std::vector<std::uint8_t>;

/// Bytes of a text, unchanged (UTF-8 stays UTF-8).
Bytes bytesOf(std::string_view text);

/// `count` bytes from the system's cryptographic random source. Throws std::runtime_error when
/// the source fails, which only happens on a broken system.
Bytes randomBytes(std::size_t count);

/// HKDF with SHA-256 (RFC 5869). An empty salt means the RFC's default of hash-length zeros.
Bytes hkdfSha256(const Bytes& inputKeyMaterial, const Bytes& salt, const Bytes& info, std::size_t length);

/// HMAC with SHA-256.
Bytes hmacSha256(const Bytes& key, const Bytes& message);

/// Compares in time that depends only on the lengths, so an attacker learns nothing from timing.
bool constantTimeEqual(const Bytes& left, const Bytes& right);

/// Standard base64 with padding.
std::string base64Encode(const Bytes& bytes);
/// Nothing when the text is not standard padded base64.
std::optional<Bytes> base64Decode(std::string_view text);

/// Lower-case hexadecimal text.
std::string hexEncode(const Bytes& bytes);
/// Nothing when the text has an odd length or a non-hex character.
std::optional<Bytes> hexDecode(std::string_view text);

} // namespace orvane
