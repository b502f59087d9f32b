#include "app/model/ProgramActivity.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(ProgramActivity, isBusyWhileSomethingRuns) {
    const std::pair<AppState, Activity> cases[] = {
        {{}, Activity::busy},
        {{.homeError = "in use"}, Activity::idle},
        {{.setup = Setups::Ready{}}, Activity::idle},
        {{.setup = Setups::Failed{}, .endpoint = CuaDriverEndpoint()}, Activity::busy},
        {{.setup = Setups::Ready{}, .stopping = true}, Activity::busy},
        {{.setup = Setups::Ready{}, .node = NodeStates::WaitingForLink{}}, Activity::idle},
        {{.setup = Setups::Ready{}, .node = NodeStates::Restarting{}}, Activity::busy},
        {{.setup = Setups::Ready{}, .node = NodeStates::Running{}}, Activity::busy},
        {{.setup = Setups::Ready{}, .node = NodeStates::Pairing{}}, Activity::busy},
    };
    for (const auto& [state, expected] : cases)
        EXPECT_EQ(activityOf(state), expected) << describe(state.node) << state.setup.index();
}

}  // namespace
}  // namespace tarnik
