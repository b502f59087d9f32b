#pragma once

#include <cstddef>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

inline constexpr std::size_t ed25519KeyBytes = 32;
inline constexpr std::size_t ed25519SignatureBytes = 64;

// These functions wrap OpenSSL's libcrypto. The first call on any thread loads the library, which stays
// loaded until the program exits.

// Loads and initialises the library. Returns a message for the user on failure. Call this before the use of
// other libraries that need libcrypto but don't report failures of libcrypto.
std::expected<void, std::string> startCrypto();

// Returns the SHA-256 digest as 64 lower-case hexadecimal digits. Returns an empty string, which never equals
// a digest, if the library fails.
std::string sha256Hex(std::string_view bytes);

// Returns the digest of a regular file's contents. Returns std::nullopt if the file is not a regular file or
// can't be read to the end, or if the library fails. Uses up to 1 MiB of memory. Blocks on the disk, but
// never on a pipe.
std::optional<std::string> sha256HexOfFile(const std::string& path);

// Returns true if the signature (RFC 8032, pure Ed25519) is valid. Returns false if the library fails, and
// for invalid input: wrong lengths, a key that isn't a point of the curve, a signature that isn't canonical.
bool verifyEd25519(std::string_view publicKey, std::string_view signature, std::string_view message);

}  // namespace tarnik
