#include "core/foundation/Crypto.h"

#include <array>
#include <memory>
#include <vector>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>

#include "core/foundation/Files.h"

namespace tarnik {

namespace {

constexpr std::size_t pieceBytes = std::size_t{1} << 20;

struct Free {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
using Context = std::unique_ptr<EVP_MD_CTX, Free>;
using Key = std::unique_ptr<EVP_PKEY, Free>;

// The library notes every failure for this thread, where its next user (HTTP) would take it for its own.
class CleanErrors {
public:
    CleanErrors() {
        // Counts only as the library's first use. A transfer may still run on some thread when the program
        // ends, and the clean-up at exit would take the tables from under it.
        OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
        ERR_set_mark();
    }
    CleanErrors(const CleanErrors&) = delete;
    CleanErrors& operator=(const CleanErrors&) = delete;
    ~CleanErrors() { ERR_pop_to_mark(); }
};

const unsigned char* data(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

class Sha256 {
public:
    Sha256() : good_(context_ && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1) {}

    void add(std::string_view bytes) {
        good_ = good_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
    }

    std::optional<std::string> hex() {
        std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
        unsigned int count = 0;
        if (!good_ || EVP_DigestFinal_ex(context_.get(), digest.data(), &count) != 1) return std::nullopt;
        constexpr std::string_view digits = "0123456789abcdef";
        std::string text;
        for (unsigned int i = 0; i < count; ++i) {
            text += digits[digest[i] >> 4U];
            text += digits[digest[i] & 15U];
        }
        return text;
    }

private:
    CleanErrors cleanErrors_;
    Context context_{EVP_MD_CTX_new()};
    bool good_;
};

}  // namespace

std::string sha256Hex(std::string_view bytes) {
    Sha256 digest;
    digest.add(bytes);
    return digest.hex().value_or("");
}

std::optional<std::string> sha256HexOfFile(const std::string& path) {
    const UniqueFd file = openRegularFile(path);
    if (!file) return std::nullopt;
    Sha256 digest;
    std::vector<char> piece(pieceBytes);
    while (const auto count = readInto(file, piece)) {
        if (*count == 0) return digest.hex();
        digest.add({piece.data(), *count});
    }
    return std::nullopt;
}

bool verifyEd25519(std::string_view publicKey, std::string_view signature, std::string_view message) {
    if (publicKey.size() != ed25519KeyBytes || signature.size() != ed25519SignatureBytes) return false;
    const CleanErrors cleanErrors;
    const Key key(EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, data(publicKey), publicKey.size()));
    const Context context(EVP_MD_CTX_new());
    if (!key || !context) return false;
    if (EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1) return false;
    return EVP_DigestVerify(context.get(), data(signature), signature.size(), data(message),
                            message.size()) == 1;
}

}  // namespace tarnik
