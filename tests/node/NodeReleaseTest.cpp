#include "core/node/NodeRelease.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/foundation/Json.h"

namespace tarnik {
namespace {

using NodeRelease::Failure;
using Reason = Failure::Reason;
using Outcome = std::expected<NodeReleaseManifest, Failure>;

// Made and signed with Node.js, by the key of RFC 8032's test 1.
const std::string publicKey = "11qYAYKxCrfVS_7TyWQHOg7hcvPapiMlrwIaaPcHURo";
const std::string releaseFile =
    R"f({"v":1,"manifest":"{\n \"v\": 1,\n \"channel\": \"stable\",)f"
    R"f(\n \"version\": \"2026.3.1-2\",\n \"publishedAtMs\": 1767225600004,)f"
    R"f(\n \"minNodeVersion\": \"22.16.0\",\n \"upstream\": {\n  \"version\": \"\u00e9/1\",)f"
    R"f(\n  \"commit\": \"0bfe935e70c321c7ca3afc75ce0d0ca2f98b5422\"\n },\n \"artifacts\": {)f"
    R"f(\n  \"darwin-arm64\": {\n   \"path\": \"tarnik-node-2026.3.1-2-darwin-arm64.tgz\",)f"
    R"f(\n   \"sha256\": \"ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb\",)f"
    R"f(\n   \"size\": 51234567\n  },\n  \"other\": {\n   \"path\": \"a\",)f"
    R"f(\n   \"sha256\": \"3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d\",)f"
    R"f(\n   \"size\": 536870912\n  }\n }\n})f"
    R"f(","keyId":"21fe31dfa154a261",)f"
    R"f("sig":"fYwpsWy2_k3opeYaXPnq2fLXBPqqo2dSsZxSnPDpbdH0I0JY4NxETAKapv6s6-Ja7TIWReFv85uCZwNeRP2KDA"})f";
const std::string signature =
    "fYwpsWy2_k3opeYaXPnq2fLXBPqqo2dSsZxSnPDpbdH0I0JY4NxETAKapv6s6-Ja7TIWReFv85uCZwNeRP2KDA";

const std::string manifest = Json::parse(releaseFile, releaseFile.size())->member("manifest")->text();

const NodeReleaseManifest released{
    .version = "2026.3.1-2",
    .artifacts = {{"darwin-arm64",
                   {.path = "tarnik-node-2026.3.1-2-darwin-arm64.tgz",
                    .sha256 = "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb",
                    .size = 51234567}},
                  {"other",
                   {.path = "a",
                    .sha256 = "3e23e8160039594a33894f6564e1b1348bbd7a0088d42c4acb73eeaed59c009d",
                    .size = 536870912}}}};

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

std::string shownOutcome(const Outcome& outcome) {
    return outcome ? "taken" : describe(outcome.error());
}

Outcome verify(const std::string& file, const std::optional<std::string>& key = publicKey) {
    return NodeRelease::verifyChannelFile(file, key, ReleaseCrypto::platform());
}

TEST(NodeRelease, takesWhatTheKeySigned) {
    struct Case {
        const char* why;
        std::string file;
        std::string key = publicKey;
    };
    const Case cases[] = {
        {"as it was made", releaseFile},
        {"a padded key", releaseFile, publicKey + "="},
        {"the standard alphabet in the key", releaseFile, replaced(publicKey, "_", "/")},
        {"a padded signature", replaced(releaseFile, signature, signature + "==")},
        {"the standard alphabet in the signature",
         replaced(replaced(releaseFile, "_k3", "/k3"), "s6-J", "s6+J")},
        {"a member more", replaced(releaseFile, "{", R"({"more":[],)")},
        {"escaped in another way", replaced(releaseFile, "darwin", "d\\u0061rwin")},
        {"1 with a fraction of none", replaced(releaseFile, ":1", ":1.0")},
        {"as long as may be", releaseFile + std::string(NodeRelease::maxFileBytes - releaseFile.size(), ' ')},
    };
    for (const auto& c : cases) {
        const Outcome outcome = verify(c.file, c.key);
        EXPECT_EQ(outcome, Outcome(released)) << c.why << ": " << shownOutcome(outcome);
    }
}

TEST(NodeRelease, refusesEachFaultOfAReleaseFile) {
    struct Case {
        const char* why;
        std::string from;
        std::string to;
        Failure failure;
    };
    const std::string key = "\"21fe31dfa154a261\"";
    const auto wrongKey = [](std::string shown) { return Failure{Reason::wrongKey, std::move(shown)}; };
    const Case cases[] = {
        {"cut off", "\"}", "\"", {Reason::notJSON}},
        {"something behind", "KDA\"}", "KDA\"}{}", {Reason::notJSON}},
        {"a byte-order mark", "{\"v", "\xEF\xBB\xBF{\"v", {Reason::notJSON}},
        {"a member twice", "{", R"({"v":1,)", {Reason::notJSON}},
        {"nested deeply",
         "{",
         "{\"x\":" + std::string(30'000, '[') + std::string(30'000, ']') + ",",
         {Reason::notJSON}},
        {"a byte too long",
         "{",
         "{" + std::string(NodeRelease::maxFileBytes + 1 - releaseFile.size(), ' '),
         {Reason::notJSON}},
        {"another v", "\"v\":1", "\"v\":2", {Reason::shape}},
        {"a text for v", "\"v\":1", "\"v\":\"1\"", {Reason::shape}},
        {"true for v", "\"v\":1", "\"v\":true", {Reason::shape}},
        {"1.5 for v", "\"v\":1", "\"v\":1.5", {Reason::shape}},
        {"no v", "\"v\"", "\"w\"", {Reason::shape}},
        {"no manifest", "\"manifest\"", "\"Manifest\"", {Reason::shape}},
        {"an object for the manifest", "\"manifest\":", R"("manifest":{},"x":)", {Reason::shape}},
        {"no signature", "\"sig\"", "\"Sig\"", {Reason::shape}},
        {"a number for the signature", "\"sig\":", R"("sig":1,"x":)", {Reason::shape}},
        {"no key id", "keyId", "keyID", wrongKey("none")},
        {"another key id", key, "\"21fe31dfa154a262\"", wrongKey("21fe31dfa154a262")},
        {"a key id in upper case", key, "\"21FE31DFA154A261\"", wrongKey("21FE31DFA154A261")},
        {"a number for the key id", key, "21", wrongKey("21")},
        {"null for the key id", key, "null", wrongKey("null")},
        {"an object for the key id", key, R"({"a": [1]})", wrongKey(R"({"a":[1]})")},
        {"controls in the key id", key, R"("\u001b[2J\nx\u202e")", wrongKey("[2J x")},
        {"a long key id", key, "\"" + std::string(1000, 'k') + "\"",
         wrongKey(std::string(63, 'k') + "\xE2\x80\xA6")},
        {"63 bytes of signature", "2KDA\"", "2KA\"", {Reason::badSignature}},
        {"65 bytes of signature", "KDA\"", "KDAAA\"", {Reason::badSignature}},
        {"a signature that isn't base64", "fYwp", "fY p", {Reason::badSignature}},
        {"another signature", "fYwp", "fYwq", {Reason::badSignature}},
        {"another byte in the manifest", "51234567", "51234568", {Reason::badSignature}},
        {"other white space in the manifest", R"(\n \")", R"(\n\")", {Reason::badSignature}},
    };
    for (const auto& c : cases) {
        const Outcome outcome = verify(replaced(releaseFile, c.from, c.to));
        EXPECT_EQ(outcome, Outcome(std::unexpect, c.failure)) << c.why << ": " << shownOutcome(outcome);
    }
    EXPECT_EQ(verify(""), Outcome(std::unexpect, Failure{Reason::notJSON}));
    EXPECT_EQ(verify("[]"), Outcome(std::unexpect, Failure{Reason::shape}));
}

TEST(NodeRelease, letsTheFirstFailingStepDecide) {
    const auto file = [](const std::string& keyId, const std::string& sig, const std::string& text) {
        return R"({"v":1,"keyId":")" + keyId + R"(","sig":")" + sig + R"(","manifest":)" + quotedJson(text) +
               "}";
    };
    const std::string good = "21fe31dfa154a261";
    ReleaseCrypto signedByUs = ReleaseCrypto::platform();
    signedByUs.verifyEd25519 = [](auto...) { return true; };
    const ReleaseCrypto real = ReleaseCrypto::platform();
    struct Case {
        const char* why;
        std::optional<std::string> key;
        std::string file;
        const ReleaseCrypto& crypto;
        Reason reason;
    };
    const Case cases[] = {
        {"no key", std::nullopt, "", real, Reason::noKey},
        {"a key that isn't base64", publicKey + "!", "", real, Reason::noKey},
        {"31 bytes of key", publicKey.substr(0, 42) + "=", "", real, Reason::noKey},
        {"33 bytes of key", "AAAA" + publicKey.substr(3), "", real, Reason::noKey},
        {"no JSON before no shape", publicKey, "{", real, Reason::notJSON},
        {"no shape before another key", publicKey, replaced(file("x", "", ""), "sig", "x"), real,
         Reason::shape},
        {"another key before a bad signature", publicKey, file("x", "!", ""), real, Reason::wrongKey},
        {"a bad signature before the manifest", publicKey, file(good, signature, "{"), real,
         Reason::badSignature},
        {"a signed manifest that isn't JSON", publicKey, file(good, signature, "{"), signedByUs,
         Reason::shape},
    };
    for (const auto& c : cases) {
        const Outcome outcome = NodeRelease::verifyChannelFile(c.file, c.key, c.crypto);
        ASSERT_FALSE(outcome) << c.why;
        EXPECT_EQ(outcome.error().reason, c.reason) << c.why << ": " << shownOutcome(outcome);
    }
}

TEST(NodeRelease, checksEveryMemberOfTheManifest) {
    const std::string artifactPath = "tarnik-node-2026.3.1-2-darwin-arm64.tgz";
    const auto parse = [](const std::string& from, const std::string& to) {
        return NodeRelease::parseManifest(replaced(manifest, from, to), "stable");
    };
    // What stands in the manifest, and what is put in its place, one at a time.
    struct Change {
        std::string from;
        std::vector<std::string> to;
    };
    const Change taken[] = {
        {artifactPath, {std::string(200, 'a'), "AZaz09._-."}},
        {"51234567", {"1", "5.1234567e7"}},
        {"1767225600004", {"-0.5"}},
        {"22.16.0", {"22." + std::string(50, '9') + ".0"}},
        {"\xC3\xA9/1", {""}},
        {"\"other\"", {"\"plan9-mips\""}},
    };
    for (const auto& change : taken)
        for (const auto& to : change.to) EXPECT_TRUE(parse(change.from, to)) << change.from << " -> " << to;

    const Change misshapen[] = {
        {"}", {""}},
        {"{\n", {"[{\n"}},
        {"\"v\": 1", {"\"v\": 2", "\"v\": true"}},
        {"\"channel\"", {"\"x\""}},
        {"\"stable\"", {"\"nightly\"", "null"}},
        {"\"2026.3.1-2\"", {"\"v2026.3.1\"", "\"\"", "2026"}},
        {"publishedAtMs", {"publishedAt"}},
        {"1767225600004", {"\"1767225600004\""}},
        {"22.16.0", {"22.16", "22.16.0.0", "22..0", "22.16.", "v22.16.0", "22.16.0\\n"}},
        {"\"upstream\": ", {"\"upstream\": \"\", \"x\": "}},
        {"\"version\": \"\xC3\xA9/1\",", {""}},
        {"0bfe", {"bfe", "0BFE"}},
        {"\"artifacts\": ", {"\"artifacts\": [], \"x\": "}},
        {"\"other\": ", {"\"y\": null, \"other\": "}},
        {artifactPath, {"", std::string(201, 'a'), ".a", "a/b", "a\\n"}},
        {"sha256", {"sha512"}},
        {"ca978112", {"CA978112", "0ca978112"}},
        {"51234567", {"0", "536870913", "1.5", "1e300", "\"1\""}},
        {"536870912", {"0"}},
    };
    const Outcome refusal(std::unexpect, Failure{Reason::shape});
    for (const auto& change : misshapen)
        for (const auto& to : change.to)
            EXPECT_EQ(parse(change.from, to), refusal) << change.from << " -> " << to;

    const auto none = parse("\"artifacts\": ", "\"artifacts\": {}, \"x\": ");
    EXPECT_TRUE(none && none->artifacts.empty());
}

TEST(NodeRelease, looksAtTheChannelLast) {
    const std::string beta = replaced(manifest, "stable", "beta");
    EXPECT_EQ(NodeRelease::parseManifest(beta, "beta"), Outcome(released));
    EXPECT_EQ(NodeRelease::parseManifest(beta, "stable"),
              Outcome(std::unexpect, Failure{Reason::wrongChannel}));
    EXPECT_EQ(NodeRelease::parseManifest(replaced(beta, "536870912", "0"), "stable"),
              Outcome(std::unexpect, Failure{Reason::shape}));
}

TEST(NodeRelease, knowsThePlatformItWasBuiltFor) {
    EXPECT_EQ(std::ranges::count(NodeRelease::platforms, NodeRelease::hostPlatform), 1)
        << NodeRelease::hostPlatform;
}

}  // namespace
}  // namespace tarnik
