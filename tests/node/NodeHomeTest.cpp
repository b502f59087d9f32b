#include "core/node/NodeHome.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using ResolveReason = NodeHome::ResolveError::Reason;
using ClaimReason = NodeHome::ClaimError::Reason;
namespace fs = std::filesystem;

std::string text(const std::expected<NodeHome, NodeHome::ResolveError>& result) {
    if (result) return result->path + (result->isDefault ? " (default)" : "");
    return describe(result.error());
}

TEST(NodeHome, resolvesOnlyFoldersSafeToFillAndRemove) {
    const std::string standard = "/Users/me/.tarnik/node (default)";
    const auto reserved = [](const std::string& path) {
        return "The node folder can't be " + path + ", which holds other things. Pick a new or empty folder.";
    };
    const auto overlaps = [](const std::string& path) {
        return "The test node folder " + path + " can't be inside ~/.tarnik/node or contain it.";
    };
    struct Case {
        std::optional<std::string> chosen;
        std::string result;
    };
    const Case cases[] = {
        {std::nullopt, standard},
        {"\xC2\xA0\n\xE3\x80\x80", standard},
        {"/Users/me/.tarnik/node/", standard},
        {" relative/dir\n", "The node folder must be a full path (starting with /), not relative/dir."},
        {"/x/..", reserved("/")},
        {"/Users/me", reserved("/Users/me")},
        {"/Users/me/.tarnik/", reserved("/Users/me/.tarnik")},
        {"/Users/me/.tarnik/node/sub", overlaps("/Users/me/.tarnik/node/sub")},
        {"/Users", overlaps("/Users")},
        {"/Users/me/.tarnik/node2", "/Users/me/.tarnik/node2"},
        {"/User", "/User"},
        {"\t/a/b/../c ", "/a/c"},
    };
    for (const auto& c : cases) EXPECT_EQ(text(NodeHome::resolve(c.chosen, "/Users/me/")), c.result);
}

TEST(NodeHome, looksThroughLinksForTheDefaultFolder) {
    const TemporaryFolder folder;
    const std::string home = folder.path() + "/home";
    const std::string elsewhere = folder.path() + "/elsewhere";
    fs::create_directories(home + "/.tarnik/node");
    fs::create_directories(elsewhere);
    fs::create_directory_symlink(home + "/.tarnik/node", elsewhere + "/node");
    fs::create_directory_symlink(home, elsewhere + "/home");
    fs::create_directory_symlink(folder.path(), folder.path() + "/all");

    const auto reason = [&](const std::string& chosen) {
        return NodeHome::resolve(chosen, home).error().reason;
    };
    EXPECT_EQ(reason(elsewhere + "/node"), ResolveReason::overlapsDefault);
    EXPECT_EQ(reason(elsewhere + "/node/new/er"), ResolveReason::overlapsDefault);
    EXPECT_EQ(reason(elsewhere + "/home"), ResolveReason::overlapsDefault);
    EXPECT_EQ(text(NodeHome::resolve(folder.path() + "/all/new", home)), folder.path() + "/all/new");
}

// A node home in a fresh folder, by default not there yet.
struct Fixture {
    TemporaryFolder folder;
    NodeHome home{.path = folder.path() + "/above/node", .isDefault = false};

    void put(const std::string& path) const {
        fs::create_directories(fs::path(path).parent_path());
        std::ofstream(path) << "theirs";
    }
    std::string markerText() const {
        std::ifstream file(home.marker());
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::optional<ClaimReason> refusal() const {
        const auto claimed = home.claim();
        if (claimed) return std::nullopt;
        return std::get<NodeHome::ClaimError>(claimed.error()).reason;
    }
};

TEST(NodeHome, claimsANewOrEmptyFolderOnce) {
    for (const bool isThere : {false, true}) {
        const Fixture f;
        if (isThere) fs::create_directories(f.home.path);
        EXPECT_TRUE(f.home.claim().has_value());
        EXPECT_TRUE(f.home.isClaimed());
        EXPECT_EQ(f.markerText().size(), 76U);
        if (!isThere) {
            EXPECT_EQ(fs::status(f.home.path).permissions(), fs::perms::owner_all);
        }

        f.put(f.home.marker());
        f.put(f.home.path + "/other");
        EXPECT_TRUE(f.home.claim().has_value());
        EXPECT_EQ(f.markerText(), "theirs");
    }
}

TEST(NodeHome, refusesWhatIsNotItsOwnAndChangesNothing) {
    const auto danglingLink = [](const Fixture& f) {
        fs::create_directories(f.folder.path() + "/above");
        fs::create_symlink("nowhere", f.home.path);
    };
    struct Case {
        const char* why;
        void (*prepare)(const Fixture&);
        ClaimReason reason;
    };
    const Case cases[] = {
        {"a file", [](const Fixture& f) { f.put(f.home.path); }, ClaimReason::notAFolder},
        {"a link to nowhere", danglingLink, ClaimReason::isALink},
        {"a hidden file", [](const Fixture& f) { f.put(f.home.path + "/.x"); }, ClaimReason::holdsOtherFiles},
        {"an install, but in a chosen folder", [](const Fixture& f) { f.put(f.home.wrapper()); },
         ClaimReason::holdsOtherFiles},
    };
    for (const auto& c : cases) {
        const Fixture f;
        c.prepare(f);
        EXPECT_EQ(f.refusal(), c.reason) << c.why;
        EXPECT_FALSE(f.home.isClaimed()) << c.why;
    }
}

TEST(NodeHome, adoptsACommandLineInstallInTheDefaultFolder) {
    for (const auto sign : {&NodeHome::wrapper, &NodeHome::joinRecord, &NodeHome::entry}) {
        Fixture f;
        f.home.isDefault = true;
        f.put((f.home.*sign)());
        fs::create_symlink("../victim", f.home.marker());
        EXPECT_EQ(f.refusal(), ClaimReason::holdsOtherFiles);
        fs::remove(f.home.marker());
        EXPECT_EQ(f.home.claim().has_value(), sign != &NodeHome::entry);
    }
}

TEST(NodeHome, isInstalledWithBothItsParts) {
    const Fixture f;
    f.put(f.home.nodeBinary());
    f.put(f.home.entry());
    EXPECT_FALSE(f.home.isInstalled()) << "the runtime can't be run";
    fs::permissions(f.home.nodeBinary(), fs::perms::owner_all);
    EXPECT_TRUE(f.home.isInstalled());
    fs::remove(f.home.entry());
    EXPECT_FALSE(f.home.isInstalled());
}

}  // namespace
}  // namespace tarnik
