#include "core/node/NodeHomeLock.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "core/process/Spawner.h"
#include "tests/support/Eventually.h"
#include "tests/support/ForkedChild.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using enum NodeHomeLock::Failure::Reason;

std::optional<NodeHomeLock::Failure::Reason> refusal(const NodeHome& home) {
    const auto taken = NodeHomeLock::take(home);
    return taken ? std::nullopt : std::optional(taken.error().reason);
}

TEST(NodeHomeLock, isHeldUntilItsProcessEnds) {
    const TemporaryFolder folder;
    const NodeHome home{.path = folder.path() + "/missing/node"}, link{.path = folder.path() + "/link"};
    fs::create_directory_symlink(home.path, link.path);
    const ::mode_t before = ::umask(0);
    std::optional<NodeHomeLock> lock = NodeHomeLock::take(home).value();
    ::umask(before);
    EXPECT_EQ(fs::status(home.path).permissions(), fs::perms(0700));
    EXPECT_EQ(refusal(home), heldElsewhere);
    EXPECT_EQ(refusal(link), heldElsewhere) << "the lock is on the folder, not on its path";
    EXPECT_TRUE(home.claim()) << "the folder is still empty";

    const auto child = Spawner::spawn({.executable = "/bin/sleep", .arguments = {"60"}});
    ASSERT_TRUE(child);
    lock.reset();
    EXPECT_EQ(refusal(home), std::nullopt) << "no child inherits it";
    (*child)->signal(SIGKILL);

    std::optional<ForkedChild> holder(std::in_place, [&] {
        const auto held = NodeHomeLock::take(home);
        while (true) ::pause();
    });
    EXPECT_TRUE(eventually([&] { return refusal(home) == heldElsewhere; }));
    holder.reset();
    EXPECT_EQ(refusal(home), std::nullopt);
}

TEST(NodeHomeLock, isUnavailableWithoutAFolder) {
    const TemporaryFolder folder;
    const std::string file = folder.write("file", "x"), dangling = folder.path() + "/dangling";
    fs::create_symlink(folder.path() + "/nowhere", dangling);
    for (const auto& at : {file, dangling, file + "/below"})
        EXPECT_EQ(refusal({.path = at}), unavailable) << at;
    EXPECT_FALSE(fs::exists(folder.path() + "/nowhere"));
    EXPECT_EQ(folder.read("file"), "x");
}

}  // namespace
}  // namespace tarnik
