#include "core/updates/ActivitySources.h"

#include <gtest/gtest.h>

namespace tarnik {

using namespace std::chrono_literals;

constexpr pid_t node = 10;
constexpr pid_t driver = 20;

TEST(ActivitySources, keepTheUnknownUnknown) {
    const ProcessEntry holder{.pid = 11, .parent = node, .path = "/stand/in", .started = ProcessTime(5s)};
    ActivitySources from{.nodePID = [] { return node; },
                         .driverPID = [] { return driver; },
                         .processesUnder = [holder](pid_t) { return std::vector{holder}; },
                         .cpuSeconds = [](pid_t pid) { return pid == driver ? 1.5 : -1; },
                         .now = [] { return ActivitySample::Moment{TimePoint(7s), ProcessTime(8s)}; },
                         .holderPath = "/stand/in"};
    ActivitySample expected{.at = {TimePoint(7s), ProcessTime(8s)},
                            .nodeHoldsAwake = true,
                            .driverCPUSeconds = 1.5,
                            .driverPID = driver,
                            .settingUp = true,
                            .nodePID = node,
                            .holders = {{{11, ProcessTime(5s)}}}};
    EXPECT_EQ(from.sample({.settingUp = true}), expected);

    from.cpuSeconds = [](pid_t) { return std::nullopt; };  // the driver has just ended
    from.processesUnder = [](pid_t) { return std::nullopt; };
    expected.driverCPUSeconds.reset(), expected.nodeHoldsAwake.reset(), expected.holders.reset();
    EXPECT_EQ(from.sample({.settingUp = true}), expected);

    // Without a node there are no holders, even if the process table is unreadable.
    from.nodePID = from.driverPID = [] { return std::nullopt; };
    EXPECT_EQ(from.sample({}).nodeHoldsAwake, false);
    EXPECT_EQ(from.sample({}).holders, std::vector<KeepAwakeHolder::Seen>());
}

}  // namespace tarnik
