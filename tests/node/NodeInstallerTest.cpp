#include "core/node/NodeInstaller.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "core/foundation/Json.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;

const std::string runtimeDigest(64, 'a');
const std::string packageDigest(64, 'b');

void write(const std::string& path, const std::string& text, mode_t mode = 0600) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << text;
    ::chmod(path.c_str(), mode);
}

// Everything is published, and the bytes of an archive are its digest. Each archive unpacks to its files and
// a folder without permissions.
struct Fixture {
    TemporaryFolder folder;
    NodeHome home = NodeHome::resolve(folder.path() + "/node", "/Users/me").value();
    NodeInstaller::Settings settings{
        .releaseBase = Url::parse("https://release.example/helper"),
        .releasePublicKey = std::string(43, 'A'),
        .platform = "test-cpu",
        .runtime = NodeRuntime{"test-cpu", "v1.2.3", "https://node.example/", "node.tar.gz", runtimeDigest}};
    std::string version = "2026.5.1", runtimeFile = "bin/node";
    std::string packageBytes = packageDigest, runtimeBytes = runtimeDigest;
    std::vector<std::string> packageFiles{"bin/tarnik-node", "lib/node_modules/openclaw/openclaw.mjs"};
    std::function<void()> afterExtract = [] {};
    std::string events;  // addresses and progress texts, one per line

    std::string releaseFile() const {
        const std::string manifest =
            R"({"v":1,"channel":"stable","version":")" + version +
            R"(","publishedAtMs":1,"minNodeVersion":"22.0.0","upstream":{"version":"1","commit":")" +
            std::string(40, 'c') + R"("},"artifacts":{"test-cpu":{"path":"package.tar.gz","sha256":")" +
            packageDigest + R"(","size":10}}})";
        return R"({"v":1,"manifest":)" + quotedJson(manifest) + R"(,"keyId":"0123456789abcdef","sig":")" +
               std::string(86, 'A') + R"("})";
    }

    NodeInstallerDeps deps() {
        NodeInstallerDeps deps;
        deps.fetch = [this](const std::string& url) {
            events += url + "\n";
            return releaseFile();
        };
        deps.download = [this](const std::string& url, const std::string& to, const Http::Progress&) {
            events += url + "\n";
            write(to, url.ends_with("/node.tar.gz") ? runtimeBytes : packageBytes);
            return std::expected<void, InstallError>();
        };
        deps.extract = [this](const std::string& archive, const std::string& to) {
            const bool isRuntime = archive.ends_with("/node.tar.gz");
            for (const auto& file : isRuntime ? std::vector{runtimeFile} : packageFiles)
                write(to + "/" + file, version, 0700);
            ::mkdir((to + "/locked").c_str(), 0);
            afterExtract();
            return std::expected<void, InstallError>();
        };
        deps.runtimeVersion = [](const std::string& node) {
            return isExecutableFile(node) ? std::optional<std::string>("v1.2.3") : std::nullopt;
        };
        deps.crypto = {.verifyEd25519 = [](auto...) { return true; },
                       .sha256Hex = [](auto) { return "0123456789abcdef" + std::string(48, '0'); },
                       .sha256HexOfFile = [](const std::string& path) { return readFile(path, 99); }};
        return deps;
    }

    // Returns an empty text on success.
    std::string install() {
        const auto note = [this](const std::string& text) { events += text + "\n"; };
        const auto done = NodeInstaller(home, settings, deps()).install({.text = note});
        EXPECT_TRUE(!fs::exists(home.path) || fs::is_empty(home.path + "/tmp")) << "staging folder left";
        return done ? "" : describe(done.error());
    }

    void installedVersionIs(const std::string& text) const {
        write(home.appDir() + "/lib/node_modules/openclaw/tarnik-node.json", text);
    }
};

TEST(NodeInstaller, installsTheRuntimeAndThenThePackage) {
    Fixture f;
    EXPECT_EQ(f.install(), "");
    EXPECT_TRUE(f.home.isInstalled() && f.home.isClaimed());
    const std::string fetch = "https://release.example/helper/stable.json\n";
    const std::string package =
        "Downloading tarnik's helper…\nhttps://release.example/helper/package.tar.gz\n";
    EXPECT_EQ(f.events, fetch + "Downloading Node.js v1.2.3…\nhttps://node.example/node.tar.gz\n" + package);

    // Again, with the version that is installed and required: only the package is downloaded.
    f.events.clear();
    f.version = "2026.5.2";
    f.installedVersionIs(R"({"version":"2026.5.2"})");
    f.settings.minimumVersion = "2026.5.2";
    EXPECT_EQ(f.install(), "");
    EXPECT_EQ(f.events, fetch + package);
    EXPECT_EQ(readFile(f.home.entry(), 99), "2026.5.2");
}

TEST(NodeInstaller, keepsTheInstalledHelperAfterARefusal) {
    using Arrange = std::function<void(Fixture&)>;
    const auto installed = [](const std::string& text) -> Arrange {
        return [text](auto& f) { f.installedVersionIs(text); };
    };
    const auto damaged = [](std::string Fixture::* part) -> Arrange {
        return [part](auto& f) {
            fs::permissions(f.home.nodeBinary(), fs::perms::owner_read);  // a new runtime is needed
            f.*part = "other";
        };
    };
    const std::pair<const char*, Arrange> cases[] = {
        {"Node.js didn't match its", damaged(&Fixture::runtimeBytes)},
        {"tarnik's helper is missing a file.", damaged(&Fixture::runtimeFile)},
        {"tarnik's helper didn't match its", damaged(&Fixture::packageBytes)},
        {"tarnik's helper is missing a file.", [](auto& f) { f.packageFiles.pop_back(); }},
        {"tarnik's helper 2026.6.1 is older", installed(R"({"version":"2026.6.2"})")},
        {"tarnik's helper 2026.6.1 is older", installed(R"({"version":"newest"})")},
        {"tarnik's helper 2026.6.1 is older",
         installed(R"({"version":"2026.1.1"})" + std::string(70'000, ' '))},
        {"tarnik's helper 2026.6.1 is older", [](auto& f) { f.settings.minimumVersion = "2026.10.0"; }},
        {"tarnik's helper isn't published", [](auto& f) { f.settings.runtime.reset(); }},
    };
    for (const auto& [message, arrange] : cases) {
        Fixture f;
        ASSERT_EQ(f.install(), "");
        f.version = "2026.6.1";
        arrange(f);
        EXPECT_TRUE(f.install().starts_with(message)) << message;
        EXPECT_EQ(readFile(f.home.entry(), 99), "2026.5.1") << message;
        EXPECT_TRUE(fs::exists(f.home.nodeBinary())) << message;
    }
}

TEST(NodeInstaller, replacesAPackageWithoutAVersion) {
    for (const char* text : {R"({"version":2026})", R"(["version"])", ""}) {
        Fixture f;
        f.installedVersionIs(text);
        write(f.home.marker(), "");
        EXPECT_EQ(f.install(), "") << text;
    }
}

TEST(NodeInstaller, checksTheMarkerAgainBeforeTheSwap) {
    Fixture f;
    f.afterExtract = [&f] { fs::remove(f.home.marker()); };
    EXPECT_EQ(f.install(), f.home.path + " isn't tarnik-node's own folder. Nothing was installed.");
    EXPECT_FALSE(f.home.isInstalled());
}

TEST(NodeInstaller, reportsTheWholeOutputOfTar) {
    const std::string missing = "/" + std::string(3000, 'x');
    const auto unpacked = NodeInstallerDeps::production().extract(missing, TemporaryFolder().path());
    EXPECT_TRUE(describe(unpacked.error()).contains(missing));
}

TEST(NodeInstaller, readsTheVersionFromTheRuntime) {
    const TemporaryFolder folder;
    const auto version = [&](const std::string& script, mode_t mode = 0700) {
        write(folder.path() + "/node", "#!/bin/sh\n" + script, mode);
        return NodeInstallerDeps::production().runtimeVersion(folder.path() + "/node");
    };
    EXPECT_EQ(version("test $# = 1 && test $1 = --version && echo v1.2.3"), "v1.2.3");
    EXPECT_EQ(version("echo v1.2.3; exit 1"), std::nullopt);
    EXPECT_EQ(version("echo v1.2.3", 0600), std::nullopt);
}

}  // namespace
}  // namespace tarnik
