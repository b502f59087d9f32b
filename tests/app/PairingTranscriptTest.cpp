#include "app/console/PairingTranscript.h"

#include <gtest/gtest.h>

namespace tarnik {

using namespace PairingPhases;
using Lines = std::vector<std::string>;

TEST(PairingTranscript, showsEachLineOnce) {
    const std::string longest = std::string(PairingTranscript::longestLine - 1, 'x') + "\u2026";
    std::string many;
    Lines last{"half", "\u2026"};
    for (int i = 1; i <= 300; ++i) many += std::to_string(i) + "\n";
    for (int i = 101; i <= 300; ++i) last.push_back(std::to_string(i));
    const std::tuple<const char*, PairingSession::Snapshot, Lines> cases[] = {
        {"the first line, and half of another", {"", Starting{}, "y\ny\nha", 0}, {"y", "y", "ha"}},
        {"the same words again, behind those that were cut", {"", Starting{}, "y\nhay\ny\n", 2}, {"y", "y"}},
        {"a new phase ends a line", {"", WaitingForYes{}, "y\nhalf", 8}, {"half"}},
        {"the same text", {"", WaitingForYes{}, "y\nhalf", 8}, {}},
        {"more than was seen is gone", {"", WaitingForYes{}, "later\nhalf", 100}, {"\u2026", "later"}},
        {"more lines than are shown", {"", WaitingForYes{}, many, 110}, last},
        {"a line without end", {"", Connecting{}, std::string(200'000, 'x'), 110 + many.size()}, {longest}},
    };
    PairingTranscript transcript;
    for (const auto& [why, seen, lines] : cases) EXPECT_EQ(transcript.update(seen).lines, lines) << why;
}

}  // namespace tarnik
