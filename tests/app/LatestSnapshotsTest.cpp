#include "app/pairing/LatestSnapshots.h"

#include <gtest/gtest.h>

namespace tarnik {

using namespace PairingPhases;

TEST(LatestSnapshots, holdsTheLatestOfEachPhaseInOrder) {
    LatestSnapshots snapshots;
    EXPECT_TRUE(snapshots.put({"", Starting{}, "1"}));
    for (const char* text : {"2", "3"}) EXPECT_FALSE(snapshots.put({"", Starting{}, text}));
    EXPECT_FALSE(snapshots.put({"", WaitingForYes{}, "4"}));
    const std::vector<PairingSession::Snapshot> latest{{"", Starting{}, "3"}, {"", WaitingForYes{}, "4"}};
    EXPECT_EQ(snapshots.take(), latest);
    EXPECT_TRUE(snapshots.put({"", WaitingForYes{}, "5"}));
}

}  // namespace tarnik
