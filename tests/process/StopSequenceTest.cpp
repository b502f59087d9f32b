#include "core/process/StopSequence.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

std::string text(StopAction action) {
    switch (action) {
        case StopAction::closeInput: return "close";
        case StopAction::terminate: return "terminate";
        case StopAction::kill: return "kill";
    }
    return {};
}

std::string text(StopSequence steps) {
    std::string all;
    for (const auto& [action, wait] : steps)
        all += text(action) + " " + std::to_string(std::lround(wait.count())) + " ";
    return all;
}

TEST(StopSequence, givesEachKindOfProcessItsTime) {
    EXPECT_EQ(text(StopSequences::node), "close 10 terminate 5 kill 5 ");
    EXPECT_EQ(text(StopSequences::driver), "close 2 terminate 1 kill 5 ");
    EXPECT_EQ(text(StopSequences::leftoverDriver), "terminate 1 kill 1 ");
    EXPECT_EQ(text(StopSequences::connectCommand), "terminate 3 kill 5 ");
    EXPECT_EQ(text(StopSequences::shortCommand), "terminate 2 kill 5 ");
    EXPECT_EQ(text(StopSequences::otherCopy), "terminate 30 kill 5 ");
    EXPECT_EQ(totalWait(StopSequences::node), Seconds(20));
}

TEST(StopSequence, endsAtTheFirstStepThatWorks) {
    struct Case {
        std::optional<StopAction> endsAt;
        std::optional<StopAction> givesUpAt;
        std::string performed;
    };
    const Case cases[] = {
        {StopAction::closeInput, std::nullopt, "close"},
        {StopAction::terminate, std::nullopt, "close terminate"},
        {std::nullopt, std::nullopt, "close terminate kill"},
        {std::nullopt, StopAction::kill, "close terminate"},
    };
    for (const auto& c : cases) {
        std::string performed;
        std::optional<StopAction> last;
        const auto perform = [&](StopAction action) {
            if (action == c.givesUpAt) return false;
            performed += (last ? " " : "") + text(action);
            last = action;
            return true;
        };
        const auto endedBy =
            runStopSequence(StopSequences::node, perform, [&](Seconds) { return last == c.endsAt; });
        EXPECT_EQ(endedBy, c.endsAt);
        EXPECT_EQ(performed, c.performed);
    }
}

}  // namespace
}  // namespace tarnik
