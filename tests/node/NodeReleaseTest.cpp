#include "core/node/NodeRelease.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/foundation/Json.h"

namespace tarnik {
namespace {

using NodeRelease::Failure;
using Reason = Failure::Reason;
using Outcome = std::expected<NodeReleaseManifest, Failure>;

// Generated and signed with Node.js and the key of RFC 8032, test 1.
const std::string publicKey = "11qYAYKxCrfVS_7TyWQHOg7hcvPapiMlrwIaaPcHURo";
const std::string signature =
    "2wStOLX7lePpQBXpCNtASaIaGYvxaMoB4yr-gkGmwH9YGjIMzmm2_zYke_jDdxQ8XvxpE3UcQ4mFfjqnglFQDg";
const std::string manifest =
    R"({"v": 1, "channel": "stable", "version": "2026.3.1-2", "publishedAtMs": 1767225600004,
 "minNodeVersion": "22.16.0",
 "upstream": {"version": "é/1", "commit": "0bfe935e70c321c7ca3afc75ce0d0ca2f98b5422"},
 "artifacts": {
  "darwin-arm64": {"path": "tarnik-node-2026.3.1-2-darwin-arm64.tgz", "size": 51234567,
   "sha256": "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb"},
  "other": {"path": "a", "size": 536870912,
   "sha256": "3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d"}}})";
const std::string ourKeyId = "21fe31dfa154a261";

std::string fileOf(const std::string& text, const std::string& keyId, const std::string& sig) {
    return R"({"v":1,"manifest":)" + quotedJson(text) + R"(,"keyId":")" + keyId + R"(","sig":")" + sig +
           "\"}";
}
const std::string releaseFile = fileOf(manifest, ourKeyId, signature);

const NodeReleaseManifest released{
    .version = "2026.3.1-2",
    .artifacts = {
        {"darwin-arm64",
         {"tarnik-node-2026.3.1-2-darwin-arm64.tgz",
          "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb", 51234567}},
        {"other", {"a", "3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d", 536870912}}}};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

Outcome verify(const std::string& file, const std::optional<std::string>& key = publicKey) {
    return NodeRelease::verifyChannelFile(file, key, ReleaseCrypto::platform());
}

TEST(NodeRelease, acceptsAValidSignature) {
    const std::string standard = replaced(replaced(replaced(signature, "-", "+"), "_", "/"), "_", "/") + "==";
    const std::string longest =
        releaseFile + std::string(NodeRelease::maxFileBytes - releaseFile.size(), ' ');
    for (const auto& file : {releaseFile, fileOf(manifest, ourKeyId, standard), longest})
        EXPECT_EQ(verify(file), Outcome(released)) << file.substr(0, 2000);
    EXPECT_EQ(verify(releaseFile, replaced(publicKey, "_", "/") + "="), Outcome(released));
}

TEST(NodeRelease, refusesAFaultyReleaseFile) {
    const Failure notJson{Reason::notJSON, {}}, shape{Reason::shape, {}},
        badSignature{Reason::badSignature, {}};
    const std::string key = "\"" + ourKeyId + "\"";
    const auto wrongKey = [](std::string shown) { return Failure{Reason::wrongKey, std::move(shown)}; };
    const std::tuple<std::string, std::string, Failure> cases[] = {
        {signature + "\"}", signature + "\"", notJson},
        {"{", "{" + std::string(NodeRelease::maxFileBytes + 1 - releaseFile.size(), ' '), notJson},
        {"\"v\":1", "\"v\":2", shape},
        {"\"manifest\":", R"("manifest":{},"x":)", shape},
        {"\"sig\":", R"("sig":1,"x":)", shape},
        {"keyId", "keyID", wrongKey("none")},
        {key, "\"21FE31DFA154A261\"", wrongKey("21FE31DFA154A261")},
        {key, R"("\u001b[2J\nx\u202e")", wrongKey("[2J x")},
        {key, "\"" + std::string(1000, 'k') + "\"", wrongKey(std::string(63, 'k') + "\u2026")},
        {"51234567", "51234568", badSignature},
        {R"(\n \")", R"(\n\")", badSignature},
        {signature, signature + "AA", badSignature},
    };
    for (const auto& [from, to, failure] : cases)
        EXPECT_EQ(verify(replaced(releaseFile, from, to)), Outcome(std::unexpect, failure)) << from;
}

TEST(NodeRelease, reportsTheFirstFailingCheck) {
    ReleaseCrypto signedByUs = ReleaseCrypto::platform();
    signedByUs.verifyEd25519 = [](auto...) { return true; };
    const std::string notJson = fileOf("{", ourKeyId, signature);
    const std::string beta = replaced(manifest, "stable", "beta");
    EXPECT_EQ(NodeRelease::parseManifest(beta, "beta"), Outcome(released));
    const std::pair<Outcome, Reason> cases[] = {
        {verify("", std::nullopt), Reason::noKey},
        {verify("", publicKey + "!"), Reason::noKey},
        {verify("", publicKey.substr(0, 42) + "="), Reason::noKey},
        {verify("", "AAAA" + publicKey.substr(3)), Reason::noKey},
        {verify(replaced(fileOf("", "x", ""), "sig", "x")), Reason::shape},
        {verify(fileOf("", "x", "!")), Reason::wrongKey},
        {verify(notJson), Reason::badSignature},
        {NodeRelease::verifyChannelFile(notJson, publicKey, signedByUs), Reason::shape},
        {NodeRelease::parseManifest(replaced(beta, "536870912", "0"), "stable"), Reason::shape},
        {NodeRelease::parseManifest(beta, "stable"), Reason::wrongChannel},
    };
    for (const auto& [outcome, reason] : cases)
        EXPECT_TRUE(!outcome && outcome.error().reason == reason) << describe(Failure{reason});
}

TEST(NodeRelease, checksEveryMemberOfTheManifest) {
    const std::string artifactPath = "tarnik-node-2026.3.1-2-darwin-arm64.tgz";
    const auto parse = [](const std::string& from, const std::string& to) {
        return NodeRelease::parseManifest(replaced(manifest, from, to), "stable");
    };
    for (const auto& [from, to] : {std::pair(artifactPath, std::string(200, 'a')),
                                   {artifactPath, "AZaz09._-."},
                                   {"51234567", "5.1234567e7"},
                                   {"1767225600004", "-0.5"},
                                   {"22.16.0", "22." + std::string(50, '9') + ".0"}})
        EXPECT_TRUE(parse(from, to)) << from << " -> " << to;

    // A part of the manifest and its replacements, tested one at a time.
    const std::pair<std::string, std::vector<std::string>> misshapen[] = {
        {"}", {""}},
        {"\"v\": 1", {"\"v\": 2", "\"v\": true"}},
        {"\"channel\"", {"\"x\""}},
        {"\"stable\"", {"\"nightly\"", "null"}},
        {"\"2026.3.1-2\"", {"\"v2026.3.1\"", "2026"}},
        {"1767225600004", {"\"1767225600004\""}},
        {"22.16.0", {"22.16", "22.16.0.0", "22..0", "22.16.", "v22.16.0", "22.16.0\\n"}},
        {"\"upstream\": ", {"\"upstream\": \"\", \"x\": "}},
        {"\"version\": \"é/1\",", {""}},
        {"0bfe", {"bfe", "0BFE"}},
        {"\"artifacts\": ", {"\"artifacts\": [], \"x\": "}},
        {artifactPath, {"", std::string(201, 'a'), ".a", "a/b", "a\\n"}},
        {"sha256", {"sha512"}},
        {"ca978112", {"CA978112", "0ca978112"}},
        {"51234567", {"0", "536870913", "1.5", "1e300", "\"1\""}},
    };
    for (const auto& [from, replacements] : misshapen)
        for (const auto& to : replacements)
            EXPECT_EQ(parse(from, to), Outcome(std::unexpect, Failure{Reason::shape})) << from << " " << to;
}

}  // namespace
}  // namespace tarnik
