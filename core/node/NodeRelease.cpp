#include "core/node/NodeRelease.h"

#include <algorithm>

#include "core/foundation/Crypto.h"
#include "core/foundation/Encoding.h"
#include "core/foundation/Json.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/ReleaseVersion.h"

namespace tarnik {

ReleaseCrypto ReleaseCrypto::platform() {
    return {.verifyEd25519 = tarnik::verifyEd25519,
            .sha256Hex = tarnik::sha256Hex,
            .sha256HexOfFile = tarnik::sha256HexOfFile};
}

namespace NodeRelease {

namespace {

using Reason = Failure::Reason;

constexpr std::string_view stableChannel = "stable";
constexpr std::string_view betaChannel = "beta";

std::unexpected<Failure> failed(Reason reason) {
    return std::unexpected(Failure{.reason = reason});
}

std::optional<std::string> stringIn(const Json& object, std::string_view key) {
    const Json* member = object.member(key);
    return member ? member->asString() : std::nullopt;
}

std::optional<std::int64_t> integerIn(const Json& object, std::string_view key) {
    const Json* member = object.member(key);
    return member ? member->asInteger() : std::nullopt;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isLowerHex(std::string_view text, std::size_t digits) {
    return text.size() == digits &&
           std::ranges::all_of(text, [](char c) { return isDigit(c) || (c >= 'a' && c <= 'f'); });
}

// Returns true for a plain file name: letters, digits, ".", "_" and "-", without a folder, and not hidden.
bool isBareFileName(std::string_view text) {
    constexpr std::size_t maxLength = 200;
    if (text.empty() || text.size() > maxLength || text.front() == '.') return false;
    return std::ranges::all_of(text, [](char c) {
        return isDigit(c) || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '.' || c == '_' ||
               c == '-';
    });
}

// Returns true for three numbers of any length: "24.22.1".
bool isDottedTriple(std::string_view text) {
    int points = 0;
    bool inNumber = false;
    for (const char character : text) {
        if (character == '.' ? !inNumber : !isDigit(character)) return false;
        inNumber = character != '.';
        points += inNumber ? 0 : 1;
    }
    return points == 2 && inNumber;
}

bool isUpstream(const Json* upstream) {
    return upstream && stringIn(*upstream, "version") &&
           isLowerHex(stringIn(*upstream, "commit").value_or(""), 40);
}

std::optional<ReleaseArtifact> artifactFrom(const Json& entry) {
    auto path = stringIn(entry, "path");
    auto sha256 = stringIn(entry, "sha256");
    const auto size = integerIn(entry, "size");
    if (!path || !isBareFileName(*path) || !sha256 || !isLowerHex(*sha256, 64)) return std::nullopt;
    if (!size || *size < 1 || *size > maxArtifactBytes) return std::nullopt;
    return ReleaseArtifact{.path = *std::move(path), .sha256 = *std::move(sha256), .size = *size};
}

}  // namespace

const std::string_view hostPlatform = TARNIK_HOST_PLATFORM;

std::expected<NodeReleaseManifest, Failure> verifyChannelFile(
    std::string_view file, const std::optional<std::string>& publicKeyB64url, const ReleaseCrypto& crypto) {
    const auto key = base64url(publicKeyB64url.value_or(""));
    if (!key || key->size() != ed25519KeyBytes) return failed(Reason::noKey);
    const auto release = Json::parse(file, maxFileBytes);
    if (!release) return failed(Reason::notJSON);

    const auto manifest = stringIn(*release, "manifest");
    const auto encodedSignature = stringIn(*release, "sig");
    if (integerIn(*release, "v") != 1 || !manifest || !encodedSignature) return failed(Reason::shape);

    if (stringIn(*release, "keyId") != keyId(*key, crypto)) {
        const Json* given = release->member("keyId");
        return std::unexpected(
            Failure{.reason = Reason::wrongKey,
                    .keyId = sanitizedLine(given ? given->text() : "none", maxKeyIdCharacters)});
    }
    const auto signature = base64url(*encodedSignature);
    if (!signature || signature->size() != ed25519SignatureBytes) return failed(Reason::badSignature);
    if (!crypto.verifyEd25519(*key, *signature, std::string(signingDomain) + *manifest))
        return failed(Reason::badSignature);
    return parseManifest(*manifest, stableChannel);
}

std::expected<NodeReleaseManifest, Failure> parseManifest(std::string_view text, std::string_view channel) {
    const auto manifest = Json::parse(text, maxFileBytes);
    if (!manifest || integerIn(*manifest, "v") != 1) return failed(Reason::shape);
    const auto itsChannel = stringIn(*manifest, "channel");
    if (itsChannel != stableChannel && itsChannel != betaChannel) return failed(Reason::shape);
    auto version = stringIn(*manifest, "version");
    if (!version || !ReleaseVersion::parts(*version)) return failed(Reason::shape);
    const Json* publishedAt = manifest->member("publishedAtMs");
    if (!publishedAt || !publishedAt->isNumber()) return failed(Reason::shape);
    if (!isDottedTriple(stringIn(*manifest, "minNodeVersion").value_or(""))) return failed(Reason::shape);
    if (!isUpstream(manifest->member("upstream"))) return failed(Reason::shape);
    const Json* entries = manifest->member("artifacts");
    if (!entries || !entries->isObject()) return failed(Reason::shape);

    NodeReleaseManifest accepted{.version = *std::move(version)};
    for (const auto& [platform, entry] : entries->members()) {
        auto artifact = artifactFrom(entry);
        if (!artifact) return failed(Reason::shape);
        accepted.artifacts.emplace(platform, *std::move(artifact));
    }
    if (itsChannel != channel) return failed(Reason::wrongChannel);
    return accepted;
}

std::string keyId(std::string_view publicKey, const ReleaseCrypto& crypto) {
    constexpr std::size_t digits = 16;
    return crypto.sha256Hex(publicKey).substr(0, digits);
}

std::optional<std::string> base64url(std::string_view text) {
    return decodeBase64(text);
}

}  // namespace NodeRelease

}  // namespace tarnik
