#include "core/process/ProcessTree.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tarnik {

namespace {

// Above this number of descendants, reading the whole table is as fast.
constexpr std::size_t largestFamily = 1000;

struct Link {
    pid_t pid = 0;
    pid_t parent = 0;
    bool operator==(const Link&) const = default;
};

// Returns `ancestor`, with parent 0, and its descendants in breadth-first order.
std::optional<std::vector<Link>> walk(const ProcessTree& tree, pid_t ancestor) {
    std::vector<Link> family{{.pid = ancestor}};
    for (std::size_t next = 0; next < family.size(); ++next) {
        const pid_t parent = family[next].pid;
        const auto children = tree.children(parent);
        if (!children || family.size() + children->size() > largestFamily) return std::nullopt;
        for (const pid_t child : *children) {
            // A pid that was found before was reused. Without this check the walk might not terminate.
            if (std::ranges::find(family, child, &Link::pid) != family.end()) return std::nullopt;
            family.push_back({.pid = child, .parent = parent});
        }
    }
    return family;
}

}  // namespace

std::optional<std::vector<ProcessEntry>> ProcessTree::under(pid_t ancestor) const {
    const auto family = walk(*this, ancestor);
    if (!family || walk(*this, ancestor) != family) return std::nullopt;

    std::vector<ProcessEntry> entries;
    entries.reserve(family->size() - 1);
    for (auto link = family->begin() + 1; link != family->end(); ++link) {
        auto found = entry(link->pid);
        if (!found || found->parent != link->parent) return std::nullopt;
        entries.push_back(std::move(*found));
    }
    return entries;
}

}  // namespace tarnik
