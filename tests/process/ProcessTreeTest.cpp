#include "core/process/ProcessTree.h"

#include <map>
#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using Children = std::map<pid_t, std::vector<pid_t>>;

ProcessEntry childOf(pid_t parent, pid_t pid) {
    return {.pid = pid, .parent = parent};
}

// A system in which the processes of `parents` exist. Each walk, which starts at 1, uses the next of `walks`;
// the last one repeats.
ProcessTree systemOf(std::vector<Children> walks, std::map<pid_t, pid_t> parents) {
    return {.children = [walks = std::move(walks),
                         next = std::size_t{0}](pid_t pid) mutable -> std::optional<std::vector<pid_t>> {
                if (pid == 1 && next < walks.size()) ++next;
                const Children& now = walks[next - 1];
                return now.contains(pid) ? std::optional(now.at(pid)) : std::nullopt;
            },
            .entry = [parents = std::move(parents)](pid_t pid) -> std::optional<ProcessEntry> {
                return parents.contains(pid) ? std::optional(childOf(parents.at(pid), pid)) : std::nullopt;
            }};
}

TEST(ProcessTree, failsIfTheTreeChangesMeanwhile) {
    const Children family{{1, {2, 3}}, {2, {4}}, {3, {}}, {4, {}}};
    const std::map<pid_t, pid_t> parents{{2, 1}, {3, 1}, {4, 2}};
    Children big{{1, {}}};
    for (pid_t pid = 2; pid < 2000; ++pid) big[1].push_back(pid);
    const std::tuple<const char*, ProcessTree, std::optional<std::vector<ProcessEntry>>> cases[] = {
        {"a family", systemOf({family}, parents), std::vector{childOf(1, 2), childOf(1, 3), childOf(2, 4)}},
        {"no children", systemOf({{{1, {}}}}, parents), std::vector<ProcessEntry>{}},
        {"the first walk missed one", systemOf({{{1, {2}}, {2, {4}}, {4, {}}}, family}, parents), {}},
        {"one has no list of children", systemOf({{{1, {2, 3}}, {2, {4}}, {3, {}}}}, parents), {}},
        {"one ended before it was read", systemOf({family}, {{2, 1}, {3, 1}}), {}},
        {"one has another parent now", systemOf({family}, {{2, 1}, {3, 1}, {4, 9}}), {}},
        {"a loop", systemOf({{{1, {2}}, {2, {1}}}}, parents), {}},
        {"too many", systemOf({big}, parents), {}},
    };
    for (const auto& [why, system, under] : cases) EXPECT_EQ(system.under(1), under) << why;
}

}  // namespace
}  // namespace tarnik
