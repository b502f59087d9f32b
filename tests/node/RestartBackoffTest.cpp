#include "core/node/RestartBackoff.h"

#include <gtest/gtest.h>

#include "core/node/NodeState.h"

namespace tarnik {
namespace {

TEST(RestartBackoff, growsUntilARunWasHealthy) {
    RestartBackoff backoff;
    for (const Seconds delay : {1s, 2s, 4s, 8s, 16s, 30s, 60s, 60s, 60s})
        EXPECT_EQ(backoff.next(59.9s), delay);
    EXPECT_EQ(backoff.next(60s), 1s);
    EXPECT_EQ(backoff.next(0s), 2s);
    backoff.reset();
    EXPECT_EQ(backoff.next(0s), 1s);
}

TEST(NodeState, showsDelaysPlainly) {
    const auto shown = [](Seconds delay) { return describe(NodeState(NodeStates::Restarting{delay})); };
    EXPECT_EQ(shown(60s), "restarting 60s");
    EXPECT_EQ(shown(1.05s), "restarting 1.05s");
}

}  // namespace
}  // namespace tarnik
