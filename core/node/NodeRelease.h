#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// The cryptography that checks releases. Call from any thread.
struct ReleaseCrypto {
    // Returns true if `signature` is valid. Returns false for a key that doesn't have 32 bytes.
    std::function<bool(std::string_view publicKey, std::string_view signature, std::string_view message)>
        verifyEd25519;
    std::function<std::string(std::string_view bytes)> sha256Hex;  // lower case
    // Returns std::nullopt if the file can't be read.
    std::function<std::optional<std::string>(const std::string& path)> sha256HexOfFile;

    static ReleaseCrypto platform();
};

// A package archive of a release, in the same folder as the release file.
struct ReleaseArtifact {
    std::string path;    // a file name without folders
    std::string sha256;  // lower-case hexadecimal
    std::int64_t size = 0;

    bool operator==(const ReleaseArtifact&) const = default;
};

// The parts of a release's manifest that an install needs.
struct NodeReleaseManifest {
    std::string version;
    std::map<std::string, ReleaseArtifact, std::less<>> artifacts;  // by platform; unknown platforms are kept

    bool operator==(const NodeReleaseManifest&) const = default;
};

// The signed release file: a JSON object with the manifest's text and a signature of that text.
namespace NodeRelease {

// The reason why a release file is refused.
struct Failure {
    enum class Reason { wrongKey, noKey, notJSON, shape, badSignature, wrongChannel };
    Reason reason;
    std::string keyId;  // for wrongKey: the file's key id, in one line of at most maxKeyIdCharacters

    bool operator==(const Failure&) const = default;
};

// Returns the failure as a part of a sentence for the user.
std::string describe(const Failure& failure);

inline constexpr std::string_view signingDomain = "tarnik-node-release\n";
inline constexpr std::size_t maxFileBytes = 65'536;
inline constexpr std::int64_t maxArtifactBytes = 536'870'912;
inline constexpr std::size_t maxKeyIdCharacters = 64;

// The platforms that releases are published for.
inline constexpr std::array<std::string_view, 6> platforms{"darwin-arm64", "darwin-x64", "linux-x64",
                                                           "linux-arm64",  "win32-x64",  "win32-arm64"};
// The platform of this build.
extern const std::string_view hostPlatform;

// Returns the manifest if the file is signed with the key and belongs to the stable channel. The key is
// base64url of 32 bytes.
std::expected<NodeReleaseManifest, Failure> verifyChannelFile(
    std::string_view file, const std::optional<std::string>& publicKeyB64url, const ReleaseCrypto& crypto);

// Parses the manifest of a verified release file. Fails with shape or wrongChannel.
std::expected<NodeReleaseManifest, Failure> parseManifest(std::string_view text, std::string_view channel);

// Returns the id of a key: the first 16 hexadecimal digits of its SHA-256.
std::string keyId(std::string_view publicKey, const ReleaseCrypto& crypto);

// Decodes base64 in either alphabet, with or without padding. Returns std::nullopt for any other text.
std::optional<std::string> base64url(std::string_view text);

}  // namespace NodeRelease

}  // namespace tarnik
