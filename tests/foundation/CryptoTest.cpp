#include "core/foundation/Crypto.h"

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

std::string fromHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

// RFC 8032, 7.1, test 1: the empty message.
const std::string key = fromHex("d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a");
const std::string signature = fromHex(
    "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e06522490155"
    "5fb8821590a33bacc61e39701cf9b46bd25bf5f0595bbe24655141438e7a100b");

TEST(Crypto, rejectsInvalidKeysAndSignatures) {
    EXPECT_TRUE(verifyEd25519(key, signature, ""));
    EXPECT_FALSE(verifyEd25519(key, signature, "x"));
    for (const auto& invalid : {key.substr(1), key + 'x', std::string(31, '\xFF') + '\x7F'})
        EXPECT_FALSE(verifyEd25519(invalid, signature, "")) << invalid.size();
    for (const auto& invalid : {signature.substr(0, 63), signature + '\0'})
        EXPECT_FALSE(verifyEd25519(key, invalid, "")) << invalid.size();
}

TEST(Crypto, digestsLargeFiles) {
    EXPECT_EQ(sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    const TemporaryFolder folder;
    for (const std::size_t size : {0U, 1U << 20U, (2U << 20U) + 3}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 >> 7U);
        EXPECT_EQ(sha256HexOfFile(folder.write("file", bytes)), sha256Hex(bytes)) << size;
    }
    // The last one can be opened, but not read.
    for (const char* other : {"/no such file", "/dev/null", "/proc/self/mem"})
        EXPECT_EQ(sha256HexOfFile(other), std::nullopt) << other;
}

}  // namespace
}  // namespace tarnik
