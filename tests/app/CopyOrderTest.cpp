#include "app/platform/CopyOrder.h"

#include <gtest/gtest.h>

#include "app/platform/SignatureRequirement.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

ProcessEntry process(pid_t pid, std::optional<ProcessTime> started) {
    return {.pid = pid, .parent = 1, .path = {}, .started = started};
}

TEST(CopyOrder, makesExactlyOneOfTwoCopiesTheEarlier) {
    const ProcessTime early{1s};
    const ProcessTime late{2s};
    const std::vector<ProcessEntry> table{process(20, early), process(30, late), process(31, late),
                                          process(40, {})};
    const std::vector<OtherCopy> all{{.pid = 20}, {.pid = 30}, {.pid = 31}, {.pid = 40}, {.pid = 50}};
    const std::pair<pid_t, std::vector<pid_t>> cases[] = {
        {20, {}}, {30, {20}}, {31, {20, 30}}, {40, {}}, {50, {}}};
    for (const auto& [ourselves, earlier] : cases) {
        std::vector<pid_t> found;
        for (const auto& copy : CopyOrder::startedBefore(ourselves, all, table)) {
            found.push_back(copy.pid);
            EXPECT_TRUE(CopyOrder::contains(table, copy)) << copy.pid;
        }
        EXPECT_EQ(found, earlier) << ourselves;
    }
    EXPECT_FALSE(CopyOrder::contains(table, {.pid = 20, .started = late})) << "a reused id";
    EXPECT_FALSE(CopyOrder::contains(table, {.pid = 50, .started = std::nullopt})) << "an ended process";
}

TEST(SignatureRequirement, acceptsOnlyPlainTeams) {
    EXPECT_EQ(signatureRequirement("AB12CD34EF"),
              "anchor apple generic and identifier \"com.tarnik.node\" and certificate leaf[subject.OU] = "
              "\"AB12CD34EF\"");
    for (const char* team : {"", "ab", "A B", "A\" or \"A", "É"})
        EXPECT_FALSE(signatureRequirement(team)) << team;
}

}  // namespace
}  // namespace tarnik
