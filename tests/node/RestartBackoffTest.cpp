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
    struct Case {
        Seconds after;
        const char* text;
    };
    for (const auto& c : {Case{60s, "restarting 60s"}, Case{0.2s, "restarting 0.2s"},
                          Case{1.05s, "restarting 1.05s"}, Case{0.0004s, "restarting 0s"}}) {
        EXPECT_EQ(describe(NodeState(NodeStates::Restarting{c.after})), c.text);
    }
    EXPECT_EQ(describe(NodeState(NodeStates::WaitingForLink{})), "waitingForLink");
}

}  // namespace
}  // namespace tarnik
