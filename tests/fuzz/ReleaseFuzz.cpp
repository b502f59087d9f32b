// For any bytes: no release is accepted without a valid signature over the exact manifest, and an accepted
// manifest has only valid names and numbers.

#include <algorithm>
#include <string>

#include "core/foundation/Json.h"
#include "core/foundation/Utf8.h"
#include "core/node/NodeRelease.h"
#include "core/node/ReleaseVersion.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

const std::string key(43, 'A');
const std::string keyId = "0123456789abcdef";

ReleaseCrypto crypto(bool verifies, std::string* message = nullptr) {
    return {.verifyEd25519 =
                [=](auto, auto, std::string_view signedText) {
                    if (message != nullptr) *message = signedText;
                    return verifies;
                },
            .sha256Hex = [](auto) { return keyId + std::string(48, '0'); },
            .sha256HexOfFile = [](const auto&) { return std::nullopt; }};
}

std::string releaseFile(std::string_view manifest) {
    return R"({"v":1,"manifest":)" + quotedJson(manifest) + R"(,"keyId":")" + keyId + R"(","sig":")" +
           std::string(86, 'A') + R"("})";
}

void checkManifest(const NodeReleaseManifest& manifest) {
    require(ReleaseVersion::compare(manifest.version, manifest.version) == 0);
    for (const auto& [platform, artifact] : manifest.artifacts) {
        require(!artifact.path.empty() && artifact.path.size() <= 200 && !artifact.path.starts_with('.'));
        require(artifact.path.find_first_of("/\\ %\n") == artifact.path.npos &&
                !artifact.path.contains('\0'));
        require(artifact.sha256.size() == 64 &&
                artifact.sha256.find_first_not_of("0123456789abcdef") == artifact.sha256.npos);
        require(artifact.size >= 1 && artifact.size <= NodeRelease::maxArtifactBytes);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = fuzz::textOf(data, size);
    if (const auto taken = NodeRelease::verifyChannelFile(text, key, crypto(true))) {
        checkManifest(*taken);
        require(size <= NodeRelease::maxFileBytes);
        const auto refused = NodeRelease::verifyChannelFile(text, key, crypto(false));
        require(!refused && refused.error().reason == NodeRelease::Failure::Reason::badSignature);
        require(!NodeRelease::verifyChannelFile(text, std::nullopt, crypto(true)));
    }

    const auto manifest = NodeRelease::parseManifest(text, "stable");
    if (manifest) checkManifest(*manifest);
    if (!isUtf8(text)) return 0;
    const std::string file = releaseFile(text);
    if (file.size() > NodeRelease::maxFileBytes) return 0;
    std::string message;
    const auto wrapped = NodeRelease::verifyChannelFile(file, key, crypto(true, &message));
    require(message == "tarnik-node-release\n" + std::string(text));
    require(wrapped == manifest);
    return 0;
}
