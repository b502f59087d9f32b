#include "core/foundation/Crypto.h"

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include <openssl/crypto.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <sys/stat.h>

#include "core/foundation/Encoding.h"
#include "core/foundation/Files.h"
#include "core/foundation/SharedLibrary.h"

namespace tarnik {

namespace {

constexpr std::size_t pieceBytes = std::size_t{1} << 20;
constexpr std::size_t smallestPiece = 4096;

// The libcrypto functions that we use.
struct Functions {
    decltype(&OPENSSL_init_crypto) start = nullptr;
    decltype(&ERR_set_mark) markErrors = nullptr;
    decltype(&ERR_pop_to_mark) dropErrors = nullptr;
    decltype(&EVP_MD_CTX_new) newContext = nullptr;
    decltype(&EVP_MD_CTX_free) freeContext = nullptr;
    decltype(&EVP_sha256) sha256 = nullptr;
    decltype(&EVP_DigestInit_ex) digestInit = nullptr;
    decltype(&EVP_DigestUpdate) digestUpdate = nullptr;
    decltype(&EVP_DigestFinal_ex) digestFinal = nullptr;
    decltype(&EVP_PKEY_new_raw_public_key) newPublicKey = nullptr;
    decltype(&EVP_PKEY_free) freeKey = nullptr;
    decltype(&EVP_DigestVerifyInit) verifyInit = nullptr;
    decltype(&EVP_DigestVerify) verify = nullptr;
};
using Loaded = std::expected<Functions, std::string>;

Loaded load() {
    Functions functions;
    SharedLibrary library(SharedLibrary::cryptoFile);
    library.find(functions.start, "OPENSSL_init_crypto");
    library.find(functions.markErrors, "ERR_set_mark");
    library.find(functions.dropErrors, "ERR_pop_to_mark");
    library.find(functions.newContext, "EVP_MD_CTX_new");
    library.find(functions.freeContext, "EVP_MD_CTX_free");
    library.find(functions.sha256, "EVP_sha256");
    library.find(functions.digestInit, "EVP_DigestInit_ex");
    library.find(functions.digestUpdate, "EVP_DigestUpdate");
    library.find(functions.digestFinal, "EVP_DigestFinal_ex");
    library.find(functions.newPublicKey, "EVP_PKEY_new_raw_public_key");
    library.find(functions.freeKey, "EVP_PKEY_free");
    library.find(functions.verifyInit, "EVP_DigestVerifyInit");
    library.find(functions.verify, "EVP_DigestVerify");
    if (library.failure()) return std::unexpected(*library.failure());
    // Disables the clean-up at exit, which would free memory that a transfer on another thread still uses.
    // Has an effect only at the library's first use.
    if (functions.start(OPENSSL_INIT_NO_ATEXIT, nullptr) != 1)
        return std::unexpected("libcrypto can't start");
    return functions;
}

// Never destroyed, because another thread may still use the library when the program exits.
const Loaded& loaded() {
    static const auto* const result = new Loaded(load());
    return *result;
}

using Context = std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)>;
using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;

// Removes the errors that the library queues for this thread. Otherwise libcurl would report these errors for
// the thread's next transfer.
class CleanErrors {
public:
    explicit CleanErrors(const Functions& library) : library_(library) { library_.markErrors(); }
    CleanErrors(const CleanErrors&) = delete;
    CleanErrors& operator=(const CleanErrors&) = delete;
    ~CleanErrors() { library_.dropErrors(); }

private:
    const Functions& library_;
};

const unsigned char* data(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

class Sha256 {
public:
    explicit Sha256(const Functions& library)
        : library_(library),
          good_(context_ && library.digestInit(context_.get(), library.sha256(), nullptr) == 1) {}

    void add(std::string_view bytes) {
        good_ = good_ && library_.digestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
    }

    std::optional<std::string> hex() {
        std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
        unsigned int count = 0;
        if (!good_ || library_.digestFinal(context_.get(), digest.data(), &count) != 1) return std::nullopt;
        return encodeHex({reinterpret_cast<const char*>(digest.data()), count});
    }

private:
    const Functions& library_;
    CleanErrors cleanErrors_{library_};
    Context context_{library_.newContext(), library_.freeContext};
    bool good_;
};

// Returns 0 on failure.
std::size_t sizeOf(const UniqueFd& file) {
    struct stat found{};
    return ::fstat(file.get(), &found) == 0 ? static_cast<std::size_t>(found.st_size) : 0;
}

}  // namespace

std::expected<void, std::string> startCrypto() {
    if (!loaded()) return std::unexpected(loaded().error());
    return {};
}

std::string sha256Hex(std::string_view bytes) {
    if (!loaded()) return "";
    Sha256 digest(*loaded());
    digest.add(bytes);
    return digest.hex().value_or("");
}

std::optional<std::string> sha256HexOfFile(const std::string& path) {
    const UniqueFd file = openRegularFile(path);
    if (!file || !loaded()) return std::nullopt;
    Sha256 digest(*loaded());
    // A small file gets a small buffer, because a caller may read thousands of files.
    std::vector<char> piece(std::clamp(sizeOf(file), smallestPiece, pieceBytes));
    while (const auto count = readInto(file, piece)) {
        if (*count == 0) return digest.hex();
        digest.add({piece.data(), *count});
    }
    return std::nullopt;
}

bool verifyEd25519(std::string_view publicKey, std::string_view signature, std::string_view message) {
    if (publicKey.size() != ed25519KeyBytes || signature.size() != ed25519SignatureBytes) return false;
    if (!loaded()) return false;
    const Functions& library = *loaded();
    const CleanErrors cleanErrors(library);
    const Key key(library.newPublicKey(EVP_PKEY_ED25519, nullptr, data(publicKey), publicKey.size()),
                  library.freeKey);
    const Context context(library.newContext(), library.freeContext);
    if (!key || !context) return false;
    if (library.verifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1) return false;
    return library.verify(context.get(), data(signature), signature.size(), data(message), message.size()) ==
           1;
}

}  // namespace tarnik
