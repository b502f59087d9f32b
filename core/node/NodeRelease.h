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

#include "core/node/ReleaseCrypto.h"

namespace tarnik {

// A package file of a release, next to the release file.
struct ReleaseArtifact {
    std::string path;    // a bare file name
    std::string sha256;  // lower-case hexadecimal
    std::int64_t size = 0;

    bool operator==(const ReleaseArtifact&) const = default;
};

// What a release holds that is needed to install it.
struct NodeReleaseManifest {
    std::string version;
    std::map<std::string, ReleaseArtifact, std::less<>> artifacts;  // by platform, known to us or not

    bool operator==(const NodeReleaseManifest&) const = default;
};

// The signed release file: a JSON object around the manifest's text, with the signature over that text.
namespace NodeRelease {

// Why a release file isn't taken.
struct Failure {
    enum class Reason { wrongKey, noKey, notJSON, shape, badSignature, wrongChannel };
    Reason reason;
    std::string keyId;  // for wrongKey: the file's, on one line and cut to maxKeyIdCharacters

    bool operator==(const Failure&) const = default;
};
std::string describe(const Failure& failure);

inline constexpr std::string_view signingDomain = "tarnik-node-release\n";
inline constexpr std::size_t maxFileBytes = 65'536;
inline constexpr std::int64_t maxArtifactBytes = 536'870'912;
inline constexpr std::size_t maxKeyIdCharacters = 64;

// Those that releases are published for.
inline constexpr std::array<std::string_view, 6> platforms{"darwin-arm64", "darwin-x64", "linux-x64",
                                                           "linux-arm64",  "win32-x64",  "win32-arm64"};
// The one that this program was built for.
extern const std::string_view hostPlatform;

// Takes the file only when it is signed with the key (base64url of its 32 bytes) and of the stable channel.
std::expected<NodeReleaseManifest, Failure> verifyChannelFile(
    std::string_view file, const std::optional<std::string>& publicKeyB64url, const ReleaseCrypto& crypto);

// The text inside a release file that has been verified. Fails with shape or wrongChannel.
std::expected<NodeReleaseManifest, Failure> parseManifest(std::string_view text, std::string_view channel);

// The short name of a key: the beginning of its digest.
std::string keyId(std::string_view publicKey, const ReleaseCrypto& crypto);

// Of either alphabet, padded or not; strict otherwise.
std::optional<std::string> base64url(std::string_view text);

}  // namespace NodeRelease

}  // namespace tarnik
