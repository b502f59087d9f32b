#include "core/node/NodeHome.h"

#include <filesystem>
#include <tuple>

#include <gtest/gtest.h>

#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using ClaimReason = NodeHome::ClaimError::Reason;
namespace fs = std::filesystem;

std::string text(const std::expected<NodeHome, NodeHome::ResolveError>& result) {
    if (result) return result->path + (result->isDefault ? " (default)" : "");
    return describe(result.error());
}

TEST(NodeHome, resolvesOnlySafeFolders) {
    const std::string standard = "/Users/me/.tarnik/node (default)";
    const std::pair<std::optional<std::string>, std::string> cases[] = {
        {std::nullopt, standard},
        {"\xC2\xA0\n\u3000", standard},
        {"/Users/me/.tarnik/node/", standard},
        {" relative/dir\n", "The node folder must be a full path (starting with /), not relative/dir."},
        {"/x/..", "The node folder can't be /, "},
        {"/Users/me", "The node folder can't be /Users/me, "},
        {"/Users/me/.tarnik/", "The node folder can't be /Users/me/.tarnik, "},
        {"/Users/me/.tarnik/node/sub", "The test node folder /Users/me/.tarnik/node/sub can't be inside"},
        {"/Users", "The test node folder /Users can't"},
        {"/Users/me/.tarnik/node2", "/Users/me/.tarnik/node2"},
        {"/User", "/User"},
        {"\t/a/b/../c ", "/a/c"},
    };
    for (const auto& [chosen, start] : cases) {
        const auto result = text(NodeHome::resolve(chosen, "/Users/me/"));
        EXPECT_TRUE(start.starts_with('/') ? result == start : result.starts_with(start)) << result;
    }
}

TEST(NodeHome, resolvesLinksBeforeComparingWithTheDefault) {
    const TemporaryFolder folder;
    const std::string home = folder.path() + "/home";
    shell(folder.path(), "mkdir -p home/.tarnik/node; ln -s home/.tarnik/node node; ln -s home link");
    for (const char* chosen : {"/node/new/er", "/link"})
        EXPECT_TRUE(text(NodeHome::resolve(folder.path() + chosen, home)).contains("inside ~/.tarnik/node"));
    EXPECT_EQ(text(NodeHome::resolve(folder.path() + "/link/new", home)), folder.path() + "/link/new");
}

// A node home in a new folder, in which `script` is run.
struct Fixture {
    TemporaryFolder folder;
    NodeHome home{.path = folder.path() + "/above/node"};

    explicit Fixture(const std::string& script = "") { shell(folder.path(), script); }
    std::optional<ClaimReason> refusal() const {
        const auto claimed = home.claim();
        if (claimed) return std::nullopt;
        return std::get<NodeHome::ClaimError>(claimed.error()).reason;
    }
};

TEST(NodeHome, claimsANewOrEmptyFolderOnce) {
    for (const char* script : {"", "mkdir -p -m 700 above/node"}) {
        const Fixture f(script);
        EXPECT_EQ(f.refusal(), std::nullopt);
        EXPECT_EQ(readFile(f.home.marker(), 100).value_or("").size(), 76U);
        EXPECT_EQ(fs::status(f.home.path).permissions(), fs::perms::owner_all);

        shell(f.home.path, "printf theirs > .tarnik-node-home; touch other");
        EXPECT_EQ(f.refusal(), std::nullopt);
        EXPECT_EQ(readFile(f.home.marker(), 100), "theirs");
    }
}

TEST(NodeHome, refusesForeignFoldersWithoutChanges) {
    using enum NodeHome::ClaimError::Reason;
    enum Home { chosen, standard };
    const std::string link = "mkdir -p above/node; ln -s ../victim above/node/.tarnik-node-home; ";
    const auto holding = [](const std::string& file) {
        return "mkdir -p $(dirname above/node/" + file + "); touch above/node/" + file;
    };
    const std::tuple<std::string, Home, std::optional<ClaimReason>> cases[] = {
        {"mkdir above; touch above/node", chosen, notAFolder},
        {"mkdir above; ln -s nowhere above/node", chosen, isALink},
        {holding(".x"), chosen, holdsOtherFiles},
        {link, chosen, holdsOtherFiles},
        // The files of a command-line install, and similar ones.
        {holding("app/bin/tarnik-node"), chosen, holdsOtherFiles},
        {holding("app/bin/tarnik-node"), standard, std::nullopt},
        {holding("trust/web-key.json"), standard, std::nullopt},
        {link + holding("trust/web-key.json"), standard, holdsOtherFiles},
        {holding("app/lib/node_modules/openclaw/openclaw.mjs"), standard, holdsOtherFiles},
    };
    for (const auto& [script, which, reason] : cases) {
        Fixture f(script);
        f.home.isDefault = which == standard;
        EXPECT_EQ(f.refusal(), reason) << script;
        EXPECT_EQ(f.home.isClaimed(), !reason) << script;
        EXPECT_FALSE(fs::exists(f.folder.path() + "/above/victim")) << script;
    }
}

TEST(NodeHome, isInstalledWithRuntimeAndPackage) {
    const Fixture f;
    for (const auto& path : {f.home.nodeBinary(), f.home.entry()})
        f.folder.write(path.substr(f.folder.path().size()), "");
    EXPECT_FALSE(f.home.isInstalled()) << "the runtime is not executable";
    fs::permissions(f.home.nodeBinary(), fs::perms::owner_all);
    EXPECT_TRUE(f.home.isInstalled());
    fs::remove(f.home.entry());
    EXPECT_FALSE(f.home.isInstalled());
}

}  // namespace
}  // namespace tarnik
