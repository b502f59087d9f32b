#include "core/driver/ProcessInspection.h"

#include <csignal>

#include <gtest/gtest.h>

#include "core/process/Spawner.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {

using namespace std::chrono_literals;

TEST(ProcessInspection, comparesResolvedPaths) {
    const TemporaryFolder folder;
    const std::string real = folder.path() + "/a/real";
    shell(folder.path(), "mkdir -p a/real; ln -s a/real link");
    EXPECT_TRUE(ProcessInspection::samePath(real + "/.", folder.path() + "//link"));
    EXPECT_TRUE(ProcessInspection::samePath(folder.path() + "/link/..", folder.path() + "/a"));
    EXPECT_TRUE(ProcessInspection::samePath(real + "/gone", folder.path() + "/link/x/../gone"));
    EXPECT_FALSE(ProcessInspection::samePath(real, folder.path()));
}

TEST(ProcessInspection, waitsUntilTheEndOrTheTimeout) {
    for (const pid_t none : {-1, 0, 1}) EXPECT_TRUE(ProcessInspection::waitForExit(none, 60s)) << none;
    const auto child = *Spawner::spawn({.executable = "/bin/sleep", .arguments = {"600"}});
    const TimePoint start = steadyNow();
    EXPECT_FALSE(ProcessInspection::waitForExit(child->pid(), 0.06s));
    EXPECT_GE(steadyNow() - start, 60ms);
    child->signal(SIGKILL);
    EXPECT_TRUE(ProcessInspection::waitForExit(child->pid(), 10s));
}

}  // namespace tarnik
