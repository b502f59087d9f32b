#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

inline constexpr std::size_t ed25519KeyBytes = 32;
inline constexpr std::size_t ed25519SignatureBytes = 64;

// OpenSSL's libcrypto is behind these. It is loaded by the first call of any, from any thread, and stays.

// Loads and starts the library; else the reason, for a person. For those who use it through another library,
// and want to be told why it can't work.
std::expected<void, std::string> startCrypto();

// The SHA-256 digest as 64 lower-case hexadecimal digits. Empty, so equal to no digest, when the library
// can't work (not there, out of memory).
std::string sha256Hex(std::string_view bytes);

// The same of a regular file's contents; none when it can't be opened or read to its end, or is anything
// else. Holds 1 MiB of it at a time. Blocks as long as the disk does, but for no pipe.
std::optional<std::string> sha256HexOfFile(const std::string& path);

// Whether the signature (RFC 8032, pure Ed25519) is the key's for this message. No for anything unusable too:
// another length, a key that is no point of the curve, a signature in another than its one canonical form.
bool verifyEd25519(std::string_view publicKey, std::string_view signature, std::string_view message);

}  // namespace tarnik
