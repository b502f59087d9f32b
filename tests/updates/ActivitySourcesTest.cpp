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
    const ActivitySample whole{.at = {TimePoint(7s), ProcessTime(8s)},
                               .nodeHoldsAwake = true,
                               .driverCPUSeconds = 1.5,
                               .driverPID = driver,
                               .settingUp = true,
                               .nodePID = node,
                               .holders = {{{11, ProcessTime(5s)}}},
                               .windowInUse = false};
    struct Case {
        const char* why;
        void (*change)(ActivitySources&);
        void (*expect)(ActivitySample&);
    };
    const Case cases[] = {
        {"all is known", [](auto&) {}, [](auto&) {}},
        {"nobody holds", [](auto& from) { from.holderPath = KeepAwakeHolder::path; },
         [](auto& sample) { sample.nodeHoldsAwake = false, sample.holders.emplace().clear(); }},
        {"no table", [](auto& from) { from.processesUnder = [](pid_t) { return std::nullopt; }; },
         [](auto& sample) { sample.nodeHoldsAwake.reset(), sample.holders.reset(); }},
        {"a holder whose start is not known",
         [](auto& from) {
             auto table = *from.processesUnder(node);
             table[0].started.reset();
             from.processesUnder = [table](pid_t) { return table; };
         },
         [](auto& sample) { sample.nodeHoldsAwake.reset(), sample.holders.reset(); }},
        {"no node, and so no need of a table",
         [](auto& from) {
             from.nodePID = [] { return std::nullopt; };
             from.processesUnder = [](pid_t) { return std::nullopt; };
         },
         [](auto& sample) {
             sample.nodePID.reset(), sample.nodeHoldsAwake = false, sample.holders.emplace().clear();
         }},
        {"no driver", [](auto& from) { from.driverPID = [] { return std::nullopt; }; },
         [](auto& sample) { sample.driverPID.reset(), sample.driverCPUSeconds.reset(); }},
        {"a driver that ended just now",
         [](auto& from) { from.cpuSeconds = [](pid_t) { return std::nullopt; }; },
         [](auto& sample) { sample.driverCPUSeconds.reset(); }},
    };
    for (const auto& c : cases) {
        ActivitySources from = busy();
        c.change(from);
        ActivitySample expected = whole;
        c.expect(expected);
        EXPECT_EQ(from.sample({.settingUp = true, .windowInUse = false}), expected) << c.why;
    }
}

}  // namespace
}  // namespace tarnik
