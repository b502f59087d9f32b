#include "core/updates/ActivitySources.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Seen = KeepAwakeHolder::Seen;

constexpr pid_t node = 10;
constexpr pid_t driver = 20;

// Node and driver run; the node holds the machine awake.
ActivitySources busy() {
    const ProcessEntry holder{
        .pid = 11, .parent = node, .path = "/stand/in/caffeinate", .started = ProcessTime(5s)};
    return {.nodePID = [] { return node; },
            .driverPID = [] { return driver; },
            .processesUnder = [holder](pid_t) { return std::vector{holder}; },
            .cpuSeconds = [](pid_t pid) { return pid == driver ? 1.5 : -1; },
            .now = [] { return ActivitySample::Moment{TimePoint(7s), ProcessTime(8s)}; },
            .holderPath = "/stand/in/caffeinate"};
}

TEST(ActivitySources, keepsTheUnknownUnknown) {
    const OwnActivity own{.settingUp = true};
    const ActivitySample whole{.at = {TimePoint(7s), ProcessTime(8s)},
                               .nodeHoldsAwake = true,
                               .driverCPUSeconds = 1.5,
                               .driverPID = driver,
                               .settingUp = true,
                               .nodePID = node,
                               .holders = {{{11, ProcessTime(5s)}}}};
    ActivitySources from = busy();
    EXPECT_EQ(from.sample(own), whole);

    from.cpuSeconds = [](pid_t) { return std::nullopt; };  // it has ended just now
    from.processesUnder = [](pid_t) { return std::nullopt; };
    ActivitySample unknown = whole;
    unknown.driverCPUSeconds.reset(), unknown.nodeHoldsAwake.reset(), unknown.holders.reset();
    EXPECT_EQ(from.sample(own), unknown);

    // Without a node nobody needs a table to know that it holds nothing.
    from.nodePID = from.driverPID = [] { return std::nullopt; };
    const ActivitySample idle{
        .at = whole.at, .nodeHoldsAwake = false, .settingUp = true, .holders = {std::vector<Seen>{}}};
    EXPECT_EQ(from.sample(own), idle);
}

}  // namespace
}  // namespace tarnik
