#include "core/driver/ProcessInspection.h"

#include <csignal>
#include <filesystem>

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/process/Spawner.h"
#include "tests/support/Shell.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

TEST(ProcessInspection, knowsItsOwnProgram) {
    const auto path = ProcessInspection::executablePath(::getpid());
    ASSERT_TRUE(path.has_value());
    EXPECT_TRUE(std::filesystem::equivalent(*path, "/proc/self/exe"));
    EXPECT_EQ(ProcessInspection::executablePath(-1), std::nullopt);
}

TEST(ProcessInspection, comparesPathsByWhereTheyLead) {
    const TemporaryFolder folder;
    const std::string real = folder.path() + "/a/real";
    shell(folder.path(), "mkdir -p a/real; ln -s a/real link");
    EXPECT_TRUE(ProcessInspection::samePath(real + "/.", folder.path() + "//link"));
    EXPECT_TRUE(ProcessInspection::samePath(folder.path() + "/link/..", folder.path() + "/a"));
    EXPECT_TRUE(ProcessInspection::samePath(real + "/gone", folder.path() + "/link/x/../gone"));
    EXPECT_FALSE(ProcessInspection::samePath(real, folder.path()));
}

TEST(ProcessInspection, waitsForAnEndOrUntilTheTimeIsOver) {
    for (const pid_t none : {-1, 0, 1}) EXPECT_TRUE(ProcessInspection::waitForExit(none, 60s)) << none;
    const TimePoint start = steadyNow();
    EXPECT_FALSE(ProcessInspection::waitForExit(::getpid(), 0.06s));
    EXPECT_GE(steadyNow() - start, 60ms);

    const auto child = *Spawner::spawn({.executable = "/bin/sleep", .arguments = {"600"}});
    EXPECT_FALSE(ProcessInspection::waitForExit(child->pid(), 0s));
    child->signal(SIGKILL);
    EXPECT_TRUE(ProcessInspection::waitForExit(child->pid(), 10s));
}

}  // namespace
}  // namespace tarnik
