#include "core/node/NodeHome.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>
#include <sys/stat.h>

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
        {"   ", standard},
        {"\xC2\xA0\n\xE3\x80\x80", standard},
        {"/Users/me/.tarnik/node/", standard},
        {" relative/dir\n", "The node folder must be a full path (starting with /), not relative/dir."},
        {"~/x", "The node folder must be a full path (starting with /), not ~/x."},
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
    // Empty when the claim went well.
    std::string claim() const {
        const auto claimed = home.claim();
        return claimed ? "" : describe(claimed.error());
    }
};

TEST(NodeHome, claimsANewOrEmptyFolderOnce) {
    for (const bool isThere : {false, true}) {
        const Fixture f;
        if (isThere) fs::create_directories(f.home.path);
        EXPECT_FALSE(f.home.isClaimed());
        EXPECT_EQ(f.claim(), "");
        EXPECT_TRUE(f.home.isClaimed());
        EXPECT_EQ(f.markerText(), NodeHome::markerText);
        EXPECT_EQ(NodeHome::markerText.size(), 76U);
        if (!isThere) {
            EXPECT_EQ(fs::status(f.home.path).permissions(), fs::perms::owner_all);
        }

        f.put(f.home.marker());
        f.put(f.home.path + "/other");
        EXPECT_EQ(f.claim(), "");
        EXPECT_EQ(f.markerText(), "theirs");
    }
}

TEST(NodeHome, refusesWhatIsNotItsOwnAndChangesNothing) {
    const auto file = [](const Fixture& f) { f.put(f.home.path); };
    const auto link = [](const Fixture& f) {
        fs::create_directories(f.folder.path() + "/above/real");
        fs::create_directory_symlink("real", f.home.path);
    };
    const auto danglingLink = [](const Fixture& f) {
        fs::create_directories(f.folder.path() + "/above");
        fs::create_symlink("nowhere", f.home.path);
    };
    const auto hidden = [](const Fixture& f) { f.put(f.home.path + "/.other"); };
    const auto wrapper = [](const Fixture& f) { f.put(f.home.wrapper()); };
    const auto markerLink = [](const Fixture& f) {
        fs::create_directories(f.home.path);
        fs::create_symlink("../victim", f.home.marker());
    };
    struct Case {
        const char* why;
        void (*prepare)(const Fixture&);
        ClaimReason reason;
    };
    const Case cases[] = {
        {"a file", file, ClaimReason::notAFolder},
        {"a link", link, ClaimReason::isALink},
        {"a link to nowhere", danglingLink, ClaimReason::isALink},
        {"other files", hidden, ClaimReason::holdsOtherFiles},
        {"a command-line install in a chosen folder", wrapper, ClaimReason::holdsOtherFiles},
        {"a link in the marker's place", markerLink, ClaimReason::holdsOtherFiles},
    };
    for (const auto& c : cases) {
        const Fixture f;
        c.prepare(f);
        const NodeHome::ClaimFailure refused = NodeHome::ClaimError{c.reason, f.home.path};
        EXPECT_EQ(f.home.claim(), std::unexpected(refused)) << c.why;
        EXPECT_FALSE(f.home.isClaimed()) << c.why;
        EXPECT_FALSE(fs::exists(f.folder.path() + "/above/victim")) << c.why;
    }
}

TEST(NodeHome, adoptsACommandLineInstallInTheDefaultFolder) {
    for (const auto sign : {&NodeHome::wrapper, &NodeHome::joinRecord, &NodeHome::entry}) {
        Fixture f;
        f.home.isDefault = true;
        f.put((f.home.*sign)());
        EXPECT_EQ(f.claim().empty(), sign != &NodeHome::entry);
        EXPECT_EQ(f.home.isClaimed(), sign != &NodeHome::entry);
    }
}

TEST(NodeHome, waitsForNobodyAndTellsWhatFailed) {
    Fixture f;
    f.home.isDefault = true;
    f.put(f.home.wrapper());
    ASSERT_EQ(::mkfifo(f.home.marker().c_str(), 0600), 0);
    EXPECT_EQ(f.claim(), describe(FileError{"open " + f.home.marker(), ENXIO}));
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

    EXPECT_FALSE(f.home.hasJoined());
    f.put(f.home.path + "/trust/web-key.json");
    EXPECT_TRUE(f.home.hasJoined());
}

}  // namespace
}  // namespace tarnik
