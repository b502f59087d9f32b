#include "core/driver/ProcessInspection.h"

#include <csignal>

#include <gtest/gtest.h>

#include "core/process/Spawner.h"

namespace tarnik {

using namespace std::chrono_literals;

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
