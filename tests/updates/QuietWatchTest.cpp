#include "core/updates/QuietWatch.h"

#include <span>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Holders = std::vector<KeepAwakeHolder::Seen>;

constexpr pid_t node = 10;
constexpr auto day = 24h;

TimePoint steady(std::chrono::nanoseconds at) {
    return TimePoint(at);
}

// The clock of processes is another one, and may be set.
ProcessTime process(std::chrono::nanoseconds at) {
    return ProcessTime(1000 * day + at);
}

ActivitySample idle(std::chrono::nanoseconds at, std::chrono::nanoseconds clockSetBy = 0s) {
    return {.at = {steady(at), process(at + clockSetBy)},
            .nodeHoldsAwake = false,
            .nodePID = node,
            .holders = Holders{}};
}

// A sample in which these hold the machine awake; none: nobody knows who does.
ActivitySample held(std::chrono::nanoseconds at, std::optional<Holders> by) {
    ActivitySample sample = idle(at);
    sample.nodeHoldsAwake.reset();
    if (by) sample.nodeHoldsAwake = !by->empty();
    sample.holders = std::move(by);
    return sample;
}

ActivitySample driven(std::chrono::nanoseconds at, std::optional<pid_t> pid,
                      std::optional<double> cpuSeconds) {
    ActivitySample sample = idle(at);
    sample.driverPID = pid;
    sample.driverCPUSeconds = cpuSeconds;
    return sample;
}

struct Case {
    const char* why;
    std::vector<ActivitySample> samples;
    std::string seen;  // for each sample, b: busy, or a dot
};

void check(std::span<const Case> cases) {
    for (const auto& c : cases) {
        QuietWatch watch;
        std::string seen;
        for (const auto& sample : c.samples) {
            watch.observe(sample);
            seen += watch.lastBusy == sample.at.steady ? 'b' : '.';
        }
        EXPECT_EQ(seen, c.seen) << c.why;
    }
}

TEST(QuietWatch, takesTheUnknownAndTheDriversWorkAsBusy) {
    ActivitySample settingUp = idle(0s);
    settingUp.settingUp = true;
    ActivitySample inUse = idle(0s);
    inUse.windowInUse = true;
    const Case cases[] = {
        {"nobody works", {idle(0s)}, "."},
        {"installing or pairing", {settingUp}, "b"},
        {"the person looks at the window", {inUse}, "b"},
        {"the node works", {held(0s, Holders{{1, process(0s)}})}, "b"},
        {"nobody knows about the node", {held(0s, std::nullopt)}, "b"},
        {"a first driver, whatever it has used", {driven(0s, 20, 9)}, "."},
        {"exactly the allowance", {driven(0s, 20, 9), driven(60s, 20, 9.25), driven(180s, 20, 9.75)}, "..."},
        {"more than the allowance, once",
         {driven(0s, 20, 9), driven(60s, 20, 9.252), driven(120s, 20, 9.3)},
         ".b."},
        {"within a second, counted as one",
         {driven(0s, 20, 9), driven(1ms, 20, 9.004), driven(2ms, 20, 9.009)},
         "..b"},
        {"another driver", {driven(0s, 20, 9), driven(60s, 21, 9), driven(120s, 21, 9)}, ".b."},
        {"a driver after none", {driven(0s, 20, 9), driven(60s, {}, 9), driven(120s, 21, 9)}, "..."},
        {"after one that could not be read",
         {driven(0s, 20, 9), driven(60s, 20, {}), driven(120s, 20, 99)},
         "..."},
    };
    check(cases);
}

TEST(QuietWatch, followsAStretchOfWorkFromHolderToHolder) {
    const auto holder = [](pid_t pid, std::chrono::seconds started) {
        return KeepAwakeHolder::Seen{pid, process(started)};
    };
    const ActivitySample first = held(0s, Holders{holder(1, 0s)});
    ActivitySample otherNode = idle(3540s);
    otherNode.nodePID = node + 1;
    ActivitySample noNode = idle(3540s);
    noNode.nodePID.reset();
    const Case cases[] = {
        {"ended before its cap", {first, idle(3479s)}, "b."},
        {"ended close to its cap", {first, idle(3480s)}, "bb"},
        {"ended by its cap, and nobody follows", {first, idle(3500s), idle(7079s), idle(7080s)}, "bbb."},
        {"the wall clock is set back meanwhile",
         {first, idle(3500s), idle(7079s, -day), idle(7080s, -day)},
         "bbb."},
        {"seen very late, it counts once", {first, idle(10h), idle(10h + 60s)}, "bb."},
        {"a successor, which ends early",
         {first, idle(3500s), held(3560s, Holders{holder(2, 3540s)}), idle(3620s)},
         "bbb."},
        {"the same pid again, at once", {first, held(3500s, Holders{holder(1, 3481s)}), idle(3560s)}, "bb."},
        {"one from before the mark is no successor",
         {first, idle(3500s), held(3510s, Holders{holder(2, 3480s)}), idle(3520s)},
         "bbbb"},
        {"the latest of several marks counts",
         {held(100s, Holders{holder(1, 0s), holder(2, 60s), holder(3, 30s)}),
          held(3500s, Holders{holder(2, 60s), holder(3, 30s)}), held(3545s, Holders{holder(3, 30s)}),
          idle(3550s), held(3560s, Holders{holder(4, 3520s)}), idle(3570s), idle(7139s), idle(7140s)},
         "bbbbbbb."},
        {"another node", {first, idle(3500s), otherNode}, "bb."},
        {"another node, the capped holder went with the old one", {first, otherNode}, "b."},
        {"no node", {first, idle(3500s), noNode}, "bb."},
        {"unknown for a while", {first, held(3000s, std::nullopt), idle(3500s), idle(3560s)}, "bbbb"},
    };
    check(cases);
}

TEST(QuietWatch, isQuietAfterAWholeStretch) {
    QuietWatch watch;
    EXPECT_FALSE(watch.isQuiet(steady(day)));
    watch.observe(idle(0s));
    EXPECT_FALSE(watch.isQuiet(steady(599s)));
    EXPECT_TRUE(watch.isQuiet(steady(600s)));
    watch.observe(held(300s, std::nullopt));
    EXPECT_FALSE(watch.isQuiet(steady(899s)));
    EXPECT_TRUE(watch.isQuiet(steady(900s)));
    EXPECT_FALSE(watch.isQuiet(steady(0s))) << "a moment before";

    watch.observe(driven(900s, 20, 9));
    watch.reset();
    EXPECT_FALSE(watch.isQuiet(steady(day)));
    watch.observe(driven(960s, 20, 9.3));
    EXPECT_EQ(watch.lastBusy, steady(960s)) << "the driver is known still";
}

}  // namespace
}  // namespace tarnik
