#include "core/process/StopSequence.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

constexpr const char* names[] = {"close", "terminate", "kill"};

std::string name(StopAction action) {
    return names[static_cast<int>(action)];
}

std::string text(StopSequence steps) {
    std::string all;
    for (const auto& [action, wait] : steps)
        all += name(action) + " " + std::to_string(std::lround(wait.count())) + " ";
    return all;
}

// Tests of their users check the other sequences.
TEST(StopSequence, givesEachKindOfProcessItsTime) {
    EXPECT_EQ(text(StopSequences::leftoverDriver), "terminate 1 kill 1 ");
    EXPECT_EQ(text(StopSequences::shortCommand), "terminate 2 kill 5 ");
    EXPECT_EQ(totalWait(StopSequences::node), Seconds(20));
}

TEST(StopSequence, endsAtTheFirstStepThatWorks) {
    struct Case {
        std::optional<StopAction> endsAt, givesUpAt;
        std::string performed;
    };
    const Case cases[] = {
        {StopAction::closeInput, {}, "close "},
        {StopAction::terminate, {}, "close terminate "},
        {{}, {}, "close terminate kill "},
        {{}, StopAction::kill, "close terminate "},
    };
    for (const auto& c : cases) {
        std::string performed;
        const auto perform = [&](StopAction action) {
            if (action != c.givesUpAt) performed += name(action) + " ";
            return action != c.givesUpAt;
        };
        const auto isOver = [&](Seconds) { return c.endsAt && performed.ends_with(name(*c.endsAt) + " "); };
        EXPECT_EQ(runStopSequence(StopSequences::node, perform, isOver), c.endsAt);
        EXPECT_EQ(performed, c.performed);
    }
}

}  // namespace
}  // namespace tarnik
