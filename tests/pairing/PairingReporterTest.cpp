#include "core/pairing/PairingReporter.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace PairingPhases;
using Reports = std::vector<std::string>;

struct Fixture {
    Reports reports;
    int snapshots = 0;
    PairingSnapshot snapshot(const PairingPhase& phase) {
        return {.phase = phase, .text = std::to_string(++snapshots)};
    }
    PairingReporter reporter{
        {.snapshot = std::bind_front(&Fixture::snapshot, this),
         .onUpdate = [this](const auto& seen) { reports.push_back(describe(seen.phase) + " " + seen.text); },
         .onExit = [this](ExitStatus status) { reports.push_back(describe(status)); }}};
};

TEST(PairingReporter, reportsPhasesInOrderAndMergesChangesWithinOne) {
    Fixture f;
    for (int i = 0; i < 2; ++i) f.reporter.add(Starting{});
    f.reporter.add(Connecting{});
    EXPECT_TRUE(f.reports.empty());
    f.reporter.report();
    f.reporter.report();
    EXPECT_EQ(f.reports, (Reports{"starting 1", "connecting 2"}));
}

TEST(PairingReporter, keepsTheExitWhenOutputFollowsIt) {
    Fixture f;
    const PairingPhase ended = Ended{ExitStatus::exited(1)};
    f.reporter.add(ended);
    f.reporter.add(ended, ExitStatus::exited(1));
    f.reporter.add(ended);
    f.reporter.report();
    f.reporter.add(ended);
    f.reporter.report();
    EXPECT_EQ(f.reports, (Reports{"ended (exit 1) 1", "exit 1", "ended (exit 1) 2"}));
}

}  // namespace
}  // namespace tarnik
