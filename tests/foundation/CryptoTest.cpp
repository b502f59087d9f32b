#include "core/foundation/Crypto.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <openssl/err.h>
#include <sys/stat.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

std::string fromHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

struct Signed {
    const char* name;
    std::string key;
    std::string message;
    std::string signature;
};

// RFC 8032, 7.1.
const Signed published[] = {
    {"test 1", "d75a980182b10ab7d54bfed3c964073a0ee172f3daa62325af021a68f707511a", "",
     "e5564300c360ac729086e2cc806e828a84877f1eb8e5d974d873e065224901555fb8821590a33bacc61e39701cf9b46bd25bf5f"
     "0"
     "595bbe24655141438e7a100b"},
    {"test 2", "3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c", "72",
     "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da085ac1e43e15996e458f3613d0f11d8c387b2ea"
     "e"
     "b4302aeeb00d291612bb0c00"},
    {"test 3", "fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025", "af82",
     "6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac18ff9b538d16f290ae67f760984dc6594a7c15e"
     "9"
     "716ed28dc027beceea1ec40a"},
    {"test SHA(abc)", "ec172b93ad5e563bf4932c70e1245034c35467ef2efd4d64ebf819683467e2bf",
     "ddaf35a193617abacc417349ae20413112e6fa4e89a97ea20a9eeee64b55d39a2192992a274fc1a836ba3c23a3feebbd454d442"
     "3"
     "643ce80e2a9ac94fa54ca49f",
     "dc2a4459e7369633a52b1bf277839a00201009a3efbf3ecb69bea2186c26b58909351fc9ac90b3ecfdfbc7c66431e0303dca179"
     "c"
     "138ac17ad9bef1177331a704"},
};

TEST(Crypto, verifiesThePublishedSignaturesAndNoOther) {
    const std::string otherKey = fromHex(published[2].key);
    for (const auto& vector : published) {
        const std::string key = fromHex(vector.key);
        const std::string message = fromHex(vector.message);
        const std::string signature = fromHex(vector.signature);
        EXPECT_TRUE(verifyEd25519(key, signature, message)) << vector.name;

        std::string tampered = message + "x";
        EXPECT_FALSE(verifyEd25519(key, signature, tampered)) << vector.name << ", a longer message";
        EXPECT_EQ(verifyEd25519(otherKey, signature, message), key == otherKey) << vector.name;
        for (const std::size_t at : {0U, 31U, 32U, 63U}) {
            tampered = signature;
            tampered[at] = static_cast<char>(tampered[at] ^ 1);
            EXPECT_FALSE(verifyEd25519(key, tampered, message)) << vector.name << ", byte " << at;
        }
    }
}

TEST(Crypto, refusesUnusableKeysAndSignatures) {
    const std::string key = fromHex(published[0].key);
    const std::string signature = fromHex(published[0].signature);
    // Test 1 with the group's order added to its second half: without the range check it would pass.
    const std::string unreduced =
        signature.substr(0, 32) + fromHex("4c8c7872aa064e049dbb3013fbf29380d25bf5f0595bbe24655141438e7a101b");
    ASSERT_EQ(unreduced.size(), ed25519SignatureBytes);
    struct Case {
        const char* why;
        std::string key;
        std::string signature;
    };
    const Case cases[] = {
        {"no key", "", signature},
        {"a short key", key.substr(1), signature},
        {"a long key", key + key.substr(0, 1), signature},
        {"a key that is no point", std::string(31, '\xFF') + '\x7F', signature},
        {"no signature", key, ""},
        {"a short signature", key, signature.substr(0, 63)},
        {"a long signature", key, signature + '\0'},
        {"a signature not reduced", key, unreduced},
    };
    for (const auto& c : cases) EXPECT_FALSE(verifyEd25519(c.key, c.signature, "")) << c.why;
}

TEST(Crypto, leavesTheErrorQueueAsItWas) {
    ERR_clear_error();
    ERR_new();
    ERR_set_error(ERR_LIB_USER, 7, nullptr);
    EXPECT_FALSE(verifyEd25519(fromHex(published[0].key), std::string(64, '\xFF'), "x"));
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 7);
    EXPECT_EQ(ERR_get_error(), 0U);
}

TEST(Crypto, digestsBytes) {
    struct Case {
        std::string bytes;
        const char* hex;
    };
    const Case cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
    };
    for (const auto& c : cases) EXPECT_EQ(sha256Hex(c.bytes), c.hex) << c.bytes.size();
}

TEST(Crypto, digestsFilesInPieces) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/file";
    const std::size_t piece = 1U << 20U;
    for (const std::size_t size :
         {std::size_t{0}, std::size_t{1}, piece - 1, piece, piece + 1, 2 * piece + 3}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 >> 7U);
        std::ofstream(path, std::ios::binary) << bytes;
        EXPECT_EQ(sha256HexOfFile(path), sha256Hex(bytes)) << size;
    }
}

TEST(Crypto, digestsNothingButRegularFiles) {
    const TemporaryFolder folder;
    const std::string pipe = folder.path() + "/pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    // The last one opens, and can't be read from its beginning.
    for (const std::string& path : {folder.path() + "/missing", folder.path(), pipe, std::string("/dev/null"),
                                    std::string("/proc/self/mem")})
        EXPECT_EQ(sha256HexOfFile(path), std::nullopt) << path;
}

}  // namespace
}  // namespace tarnik
