#include "core/pairing/PairingReporter.h"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace PairingPhases;
using Reports = std::vector<std::string>;

struct Fixture {
    Reports reports;
    int snapshots = 0;
    std::function<void()> duringFirstUpdate = [] {};
    PairingReporter reporter{{.snapshot =
                                  [this](const PairingPhase& phase) {
                                      return PairingSnapshot{.phase = phase,
                                                             .text = std::to_string(++snapshots)};
                                  },
                              .onUpdate =
                                  [this](const PairingSnapshot& snapshot) {
                                      reports.push_back(describe(snapshot.phase) + " " + snapshot.text);
                                      std::exchange(duringFirstUpdate, [] {})();
                                  },
                              .onExit = [this](ExitStatus status) { reports.push_back(describe(status)); }}};
};

TEST(PairingReporter, reportsPhasesInOrderAndMergesChangesWithinOne) {
    Fixture f;
    for (const PairingPhase& phase :
         {PairingPhase(Starting{}), PairingPhase(Starting{}), PairingPhase(Connecting{})})
        f.reporter.add(phase);
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

TEST(PairingReporter, reportsOneChangeAtATime) {
    Fixture f;
    f.duringFirstUpdate = [&] {
        f.reporter.add(Connected{}, ExitStatus::exited(0));
        f.reporter.report();
        EXPECT_EQ(f.reports.size(), 1U);
    };
    f.reporter.add(Connecting{});
    f.reporter.report();
    EXPECT_EQ(f.reports, (Reports{"connecting 1", "connected 2", "exit 0"}));
}

}  // namespace
}  // namespace tarnik
