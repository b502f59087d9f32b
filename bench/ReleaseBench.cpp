#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <unistd.h>

#include "core/foundation/Crypto.h"
#include "core/foundation/Json.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeRelease.h"

// Compares the check of a release with libcrypto alone at the same work. The two take turns in each round,
// and the median of the rounds' ratios is printed, so that other load on the machine affects both alike.

namespace {

using namespace tarnik;

constexpr std::size_t pieceBytes = std::size_t{1} << 20;

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

double secondsOf(const std::function<void()>& work) {
    const TimePoint began = steadyNow();
    work();
    return Seconds(steadyNow() - began).count();
}

const unsigned char* data(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

// A file for one run. It is inside the build folder, so it is on a disk.
class File {
public:
    explicit File(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { ::unlink(path_.c_str()); }
    const std::string& path() const { return path_; }

private:
    std::string path_ = TARNIK_CHILDREN_DIR "/../../bench/digest." + std::to_string(::getpid());
};

// Runs libcrypto over bytes in memory, in pieces of the size of a file's reads. A stride of 0 uses the same
// piece each time, from the processor's cache, which no program that reads a file can reach.
void bareDigest(std::string_view bytes, std::size_t stride) {
    const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(), EVP_MD_CTX_free);
    EVP_DigestInit_ex(context.get(), EVP_sha256(), nullptr);
    for (std::size_t i = 0; i < bytes.size() / pieceBytes; ++i)
        EVP_DigestUpdate(context.get(), bytes.data() + i * stride, pieceBytes);
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    if (EVP_DigestFinal_ex(context.get(), digest.data(), nullptr) != 1) throw std::runtime_error("digest");
    benchmark::DoNotOptimize(digest);
}

void readAlone(const std::string& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    std::vector<char> piece(pieceBytes);
    while (::read(file.get(), piece.data(), piece.size()) > 0) benchmark::DoNotOptimize(piece.data());
}

void fileDigest(benchmark::State& state) {
    std::string bytes(static_cast<std::size_t>(state.range(0)), '\0');
    std::uint64_t random = 1;
    for (char& byte : bytes) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        byte = static_cast<char>(random >> 56U);
    }
    const File file(bytes);
    if (sha256HexOfFile(file.path()) != sha256Hex(bytes)) throw std::runtime_error("another digest");

    std::vector<double> bare, cached, reading;
    bool oursFirst = false;
    for (auto _ : state) {
        oursFirst = !oursFirst;
        double ours = 0;
        const auto measure = [&] { ours = secondsOf([&] { sha256HexOfFile(file.path()); }); };
        if (oursFirst) measure();
        const double inMemory = secondsOf([&] { bareDigest(bytes, pieceBytes); });
        const double inCache = secondsOf([&] { bareDigest(bytes, 0); });
        const double read = secondsOf([&] { readAlone(file.path()); });
        if (!oursFirst) measure();
        state.SetIterationTime(ours);
        bare.push_back(ours / inMemory);
        cached.push_back(ours / inCache);
        reading.push_back(read / ours);
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
    state.counters["wall/libcrypto"] = median(bare);
    state.counters["wall/cachedPiece"] = median(cached);
    state.counters["read/wall"] = median(reading);
}

// Signs like a release, with the key of test 1 in RFC 8032.
struct Signer {
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key{nullptr, EVP_PKEY_free};
    std::string publicKey = std::string(ed25519KeyBytes, '\0');

    Signer() {
        constexpr std::array<unsigned char, 32> secret{
            0x9d, 0x61, 0xb1, 0x9d, 0xef, 0xfd, 0x5a, 0x60, 0xba, 0x84, 0x4a, 0xf4, 0x92, 0xec, 0x2c, 0xc4,
            0x44, 0x49, 0xc5, 0x69, 0x7b, 0x32, 0x69, 0x19, 0x70, 0x3b, 0xac, 0x03, 0x1c, 0xae, 0x7f, 0x60};
        key.reset(EVP_PKEY_new_raw_private_key(EVP_PKEY_ED25519, nullptr, secret.data(), secret.size()));
        std::size_t size = publicKey.size();
        auto* out = reinterpret_cast<unsigned char*>(publicKey.data());
        if (EVP_PKEY_get_raw_public_key(key.get(), out, &size) != 1) throw std::runtime_error("no key");
    }

    std::string sign(std::string_view message) const {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                              EVP_MD_CTX_free);
        std::string signature(ed25519SignatureBytes, '\0');
        std::size_t size = signature.size();
        auto* out = reinterpret_cast<unsigned char*>(signature.data());
        EVP_DigestSignInit(context.get(), nullptr, nullptr, nullptr, key.get());
        if (EVP_DigestSign(context.get(), out, &size, data(message), message.size()) != 1)
            throw std::runtime_error("not signed");
        return signature;
    }

    // The floor need not parse the key, unlike a release file.
    bool bareVerify(std::string_view signature, std::string_view message) const {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context(EVP_MD_CTX_new(),
                                                                              EVP_MD_CTX_free);
        EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get());
        return EVP_DigestVerify(context.get(), data(signature), signature.size(), data(message),
                                message.size()) == 1;
    }
};

// Repeats the work in each round. Ours and the floor take turns.
void inTurns(benchmark::State& state, const std::function<bool()>& work, const std::function<bool()>& floor) {
    constexpr int turns = 100;
    std::vector<double> ratios;
    for (auto _ : state) {
        double ours = 0;
        double bare = 0;
        for (int i = 0; i < turns; ++i) {
            bool good = true;
            ours += secondsOf([&] { good = work(); });
            bare += secondsOf([&] { good = floor() && good; });
            if (!good) throw std::runtime_error("not verified");
        }
        state.SetIterationTime(ours / turns);
        ratios.push_back(ours / bare);
    }
    state.counters["wall/libcrypto"] = median(ratios);
}

void signature(benchmark::State& state) {
    const Signer signer;
    const std::string message(2000, 'm');
    const std::string signature = signer.sign(message);
    inTurns(
        state, [&] { return verifyEd25519(signer.publicKey, signature, message); },
        [&] { return signer.bareVerify(signature, message); });
}

std::string base64(std::string_view bytes) {
    std::string text(bytes.size() / 3 * 4 + 5, '\0');
    const int size = EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), data(bytes),
                                     static_cast<int>(bytes.size()));
    text.resize(static_cast<std::size_t>(size));
    return text;
}

std::string manifest() {
    std::string artifacts;
    for (const auto platform : NodeRelease::platforms) {
        const std::string name(platform);
        artifacts += (artifacts.empty() ? "\"" : ",\"") + name + R"(":{"path":"tarnik-node-2026.3.1-)" +
                     name + R"(.tar.gz","sha256":")" + sha256Hex(name) + R"(","size":51234567})";
    }
    return R"({"v":1,"channel":"stable","version":"2026.3.1","publishedAtMs":1767225600000,)"
           R"("minNodeVersion":"22.16.0","upstream":{"version":"2026.3.1",)"
           R"("commit":"0bfe935e70c321c7ca3afc75ce0d0ca2f98b5422"},"artifacts":{)" +
           artifacts + "}}";
}

void releaseFile(benchmark::State& state) {
    const Signer signer;
    const ReleaseCrypto crypto = ReleaseCrypto::platform();
    const std::string text = manifest();
    const std::string message = std::string(NodeRelease::signingDomain) + text;
    const std::string signature = signer.sign(message);
    const std::string file = R"({"v":1,"manifest":)" + quotedJson(text) + R"(,"keyId":")" +
                             NodeRelease::keyId(signer.publicKey, crypto) + R"(","sig":")" +
                             base64(signature) + "\"}";
    const std::string key = base64(signer.publicKey);
    inTurns(
        state, [&] { return NodeRelease::verifyChannelFile(file, key, crypto).has_value(); },
        [&] { return signer.bareVerify(signature, message); });
}

BENCHMARK(fileDigest)->Arg(512 << 20)->Iterations(7)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(signature)->Iterations(20)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(releaseFile)->Iterations(20)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace
