#include "core/driver/ProcessInspection.h"

#include <filesystem>
#include <thread>

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

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
    std::filesystem::create_directories(real);
    std::filesystem::create_directory_symlink(real, folder.path() + "/link");

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

    pid_t child = 0;
    const char* arguments[] = {"sleep", "600", nullptr};
    ASSERT_EQ(::posix_spawn(&child, "/bin/sleep", nullptr, nullptr, const_cast<char**>(arguments), nullptr),
              0);
    EXPECT_FALSE(ProcessInspection::waitForExit(child, 0s));
    std::thread end([child] {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    });
    EXPECT_TRUE(ProcessInspection::waitForExit(child, 10s));
    end.join();
}

}  // namespace
}  // namespace tarnik
