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

const std::string commit(40, 'c');
const std::string runtimeDigest(64, 'a');
const std::string packageDigest(64, 'b');

void write(const std::string& path, const std::string& text, mode_t mode = 0600) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path) << text;
    ::chmod(path.c_str(), mode);
}

std::string read(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// An outside where everything is published and an archive's bytes are its digest. What it unpacks to are the
// files named here.
struct Fixture {
    TemporaryFolder folder;
    NodeHome home = NodeHome::resolve(folder.path() + "/node", "/Users/me").value();
    NodeInstaller::Settings settings{
        .releaseBase = Url::parse("https://release.example/helper"),
        .releasePublicKey = std::string(43, 'A'),
        .platform = "test-cpu",
        .developmentRuntime =
            NodeRuntime{"test-cpu", "v1.2.3", "https://node.example/", "node.tar.gz", runtimeDigest}};
    std::string version = "2026.5.1";
    std::string platform = "test-cpu";
    std::string packageBytes = packageDigest;
    std::string runtimeBytes = runtimeDigest;
    std::vector<std::string> runtimeFiles{"bin/node"};
    std::vector<std::string> packageFiles{"bin/tarnik-node", "lib/node_modules/openclaw/openclaw.mjs"};
    std::optional<InstallError> fetchError;
    std::optional<InstallError> extractError;
    std::function<void()> afterExtract = [] {};
    std::vector<std::string> events;

    std::string releaseFile() const {
        const std::string manifest =
            R"({"v":1,"channel":"stable","version":")" + version +
            R"(","publishedAtMs":1,"minNodeVersion":"22.0.0","upstream":{"version":"1","commit":")" + commit +
            R"("},"artifacts":{")" + platform + R"(":{"path":"package.tar.gz","sha256":")" + packageDigest +
            R"(","size":10}}})";
        return R"({"v":1,"manifest":)" + quotedJson(manifest) + R"(,"keyId":"0123456789abcdef","sig":")" +
               std::string(86, 'A') + R"("})";
    }

    NodeInstallerDeps deps() {
        NodeInstallerDeps deps;
        deps.fetch = [this](const std::string& url) -> std::expected<std::string, InstallError> {
            events.push_back("fetch " + url);
            if (fetchError) return std::unexpected(*fetchError);
            return releaseFile();
        };
        deps.download = [this](const std::string& url, const std::string& to,
                               const Http::Progress&) -> std::expected<void, InstallError> {
            events.push_back("download " + url);
            write(to, url.ends_with("node.tar.gz") ? runtimeBytes : packageBytes);
            return {};
        };
        deps.extract = [this](const std::string& archive,
                              const std::string& to) -> std::expected<void, InstallError> {
            if (extractError) return std::unexpected(*extractError);
            const auto& files = archive.ends_with("node.tar.gz") && !archive.ends_with("tarnik-node.tar.gz")
                                    ? runtimeFiles
                                    : packageFiles;
            for (const auto& file : files) write(to + "/" + file, version, 0700);
            ::mkdir((to + "/locked").c_str(), 0);
            afterExtract();
            return {};
        };
        deps.runtimeVersion = [](const std::string& node) -> std::optional<std::string> {
            if (!isExecutableFile(node)) return std::nullopt;
            return "v1.2.3";
        };
        deps.crypto.verifyEd25519 = [](auto, auto, auto) { return true; };
        deps.crypto.sha256Hex = [](auto) { return "0123456789abcdef" + std::string(48, '0'); };
        deps.crypto.sha256HexOfFile = [](const std::string& path) { return read(path); };
        return deps;
    }

    NodeInstaller installer() { return NodeInstaller(home, settings, deps()); }

    // "" when it went well.
    std::string install() {
        const auto done =
            installer().install({.text = [this](const std::string& text) { events.push_back(text); }});
        return done ? "" : describe(done.error());
    }

    void installedVersionIs(const std::string& text) const {
        write(home.appDir() + "/lib/node_modules/openclaw/tarnik-node.json", text);
    }

    std::vector<std::string> staged() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(home.path + "/tmp", none))
            names.push_back(entry.path());
        return names;
    }
};

TEST(NodeInstaller, installsTheRuntimeAndThenThePackage) {
    Fixture f;
    EXPECT_EQ(f.install(), "");
    EXPECT_TRUE(f.home.isInstalled());
    EXPECT_TRUE(f.home.isClaimed());
    EXPECT_EQ(f.events, (std::vector<std::string>{
                            "fetch https://release.example/helper/stable.json",
                            "Downloading Node.js v1.2.3…",
                            "download https://node.example/node.tar.gz",
                            "Downloading tarnik's helper…",
                            "download https://release.example/helper/package.tar.gz",
                        }));
    EXPECT_TRUE(f.staged().empty());

    // Once more: the runtime is there already, the package comes anew.
    f.events.clear();
    f.version = "2026.5.2";
    EXPECT_EQ(f.install(), "");
    EXPECT_EQ(f.events.size(), 3U);
    EXPECT_EQ(read(f.home.entry()), "2026.5.2");
    EXPECT_TRUE(f.staged().empty());
}

TEST(NodeInstaller, refusesBeforeItTouchesTheDisk) {
    struct Case {
        std::string message;
        std::function<void(Fixture&)> arrange;
    };
    const Case cases[] = {
        {"tarnik's helper isn't published for this Mac yet.",
         [](auto& f) { f.settings.releaseBase.reset(); }},
        {"tarnik's helper isn't published for this Mac yet.",
         [](auto& f) { f.settings.releasePublicKey.reset(); }},
        {"Couldn't download https://x/stable.json. Check your connection and try again.",
         [](auto& f) {
             f.fetchError = InstallFailure{InstallFailure::Kind::download, "https://x/stable.json"};
         }},
        {"this build carries no release key", [](auto& f) { f.settings.releasePublicKey = "short"; }},
        {"tarnik's helper 2026.5.1 is older than this Mac may install. Nothing was installed.",
         [](auto& f) { f.settings.minimumVersion = "2026.10.0"; }},
        {"tarnik's helper 2026.5.1 is older than this Mac may install. Nothing was installed.",
         [](auto& f) { f.settings.minimumVersion = "the newest"; }},
        {"tarnik's helper isn't published for this Mac (test-cpu) yet.",
         [](auto& f) { f.platform = "darwin-arm64"; }},
        {"tarnik's helper isn't published for this Mac (test-cpu) yet.",
         [](auto& f) { f.settings.developmentRuntime.reset(); }},
    };
    for (const auto& c : cases) {
        Fixture f;
        c.arrange(f);
        EXPECT_EQ(f.install(), c.message);
        EXPECT_FALSE(fs::exists(f.home.path)) << c.message;
    }
}

TEST(NodeInstaller, keepsWhatIsInstalledWhenANewOneIsBad) {
    using Kind = InstallFailure::Kind;
    struct Case {
        std::string message;
        std::function<void(Fixture&)> arrange;
    };
    const Case cases[] = {
        {"Node.js didn't match its signed release. Nothing was installed.",
         [](auto& f) {
             fs::remove(f.home.nodeBinary());
             f.runtimeBytes = "other";
         }},
        {"tarnik's helper didn't match its signed release. Nothing was installed.",
         [](auto& f) { f.packageBytes = "other"; }},
        {"Couldn't unpack tarnik's helper (tar: broken). Nothing was installed.",
         [](auto& f) { f.extractError = InstallFailure{Kind::extract, "tar: broken"}; }},
        {"tarnik's helper is missing a file. Nothing was installed.",
         [](auto& f) { f.packageFiles.pop_back(); }},
        {"tarnik's helper is missing a file. Nothing was installed.",
         [](auto& f) {
             fs::remove(f.home.nodeBinary());
             f.runtimeFiles = {"node"};
         }},
        {"tarnik's helper 2026.6.1 is older than this Mac may install. Nothing was installed.",
         [](auto& f) { f.installedVersionIs(R"({"version":"2026.6.2"})"); }},
        {"tarnik's helper 2026.6.1 is older than this Mac may install. Nothing was installed.",
         [](auto& f) { f.installedVersionIs(R"({"version":"newest"})"); }},
    };
    for (const auto& c : cases) {
        Fixture f;
        ASSERT_EQ(f.install(), "");
        f.version = "2026.6.1";
        c.arrange(f);
        EXPECT_EQ(f.install(), c.message);
        EXPECT_EQ(read(f.home.entry()), "2026.5.1") << c.message;
        EXPECT_TRUE(f.staged().empty()) << c.message;
    }
}

TEST(NodeInstaller, swapsNothingInAFolderThatIsNoLongerOurs) {
    Fixture f;
    f.afterExtract = [&f] { fs::remove(f.home.marker()); };
    EXPECT_EQ(f.install(), f.home.path + " isn't tarnik-node's own folder. Nothing was installed.");
    EXPECT_FALSE(f.home.isInstalled());
    EXPECT_TRUE(f.staged().empty());
}

TEST(NodeInstaller, quotesTarOnOneLine) {
    const TemporaryFolder folder;
    write(folder.path() + "/a", "no archive");
    const auto done = NodeInstallerDeps::production().extract(folder.path() + "/a", folder.path());
    const std::string message = done ? "" : describe(done.error());
    EXPECT_TRUE(message.starts_with("Couldn't unpack tarnik's helper (")) << message;
    EXPECT_FALSE(message.contains('\n')) << message;
}

TEST(NodeInstaller, readsTheInstalledVersionOrNone) {
    struct Case {
        std::string file;
        std::optional<std::string> version;
    };
    const Case cases[] = {
        {R"({"name":"tarnik-node","version":"2026.1.1"})", "2026.1.1"},
        {R"({"version":2026})", std::nullopt},
        {R"(["version"])", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) {
        Fixture f;
        EXPECT_EQ(f.installer().installedVersion(), std::nullopt);
        f.installedVersionIs(c.file);
        EXPECT_EQ(f.installer().installedVersion(), c.version) << c.file;
    }
}

}  // namespace
}  // namespace tarnik
