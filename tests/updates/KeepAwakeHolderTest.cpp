#include "core/updates/KeepAwakeHolder.h"

#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr pid_t node = 10;

ProcessEntry process(pid_t pid, pid_t parent, std::string_view path = "/bin/sh") {
    return {.pid = pid, .parent = parent, .path = std::string(path), .started = ProcessTime(5s)};
}

TEST(KeepAwakeHolder, findsHoldersAmongDescendantsOnly) {
    constexpr auto holder = KeepAwakeHolder::path;
    const std::tuple<const char*, std::vector<ProcessEntry>, std::vector<pid_t>> cases[] = {
        {"a grandchild behind a child, before its parent in the table",
         {process(12, 11, holder), process(11, node), process(13, node, holder), process(node, 1)},
         {13, 12}},
        {"under another parent", {process(node, 1), process(11, 1, holder)}, {}},
        {"the node itself", {process(node, 1, holder)}, {}},
        {"a loop of parents", {process(11, 12, holder), process(12, 11, holder), process(13, node)}, {}},
        {"a node that descends from itself", {process(node, 11, holder), process(11, node, holder)}, {11}},
        {"another path", {process(11, node, "/usr/bin/caffeinate2"), {.pid = 12, .parent = node}}, {}},
    };
    for (const auto& [why, table, holders] : cases) {
        std::vector<pid_t> found;
        for (const auto& entry : KeepAwakeHolder::holders(node, table)) found.push_back(entry.pid);
        EXPECT_EQ(found, holders) << why;
        EXPECT_EQ(KeepAwakeHolder::held(node, table), !holders.empty()) << why;
    }
    EXPECT_TRUE(KeepAwakeHolder::held(node, {process(11, node, "/stand/in")}, "/stand/in"));
}

TEST(KeepAwakeHolder, isUnknownWithoutItsStart) {
    std::vector<ProcessEntry> table{process(11, node, KeepAwakeHolder::path),
                                    process(12, node, KeepAwakeHolder::path), process(13, node)};
    table[2].started.reset();  // no holder
    const std::vector<KeepAwakeHolder::Seen> both{{11, ProcessTime(5s)}, {12, ProcessTime(5s)}};
    EXPECT_EQ(KeepAwakeHolder::seen(node, table), both);
    table[1].started.reset();
    EXPECT_EQ(KeepAwakeHolder::seen(node, table), std::nullopt);
}

}  // namespace
}  // namespace tarnik
