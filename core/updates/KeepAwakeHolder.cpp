#include "core/updates/KeepAwakeHolder.h"

#include <cstdint>
#include <functional>
#include <unordered_map>
#include <unordered_set>

namespace tarnik::KeepAwakeHolder {

std::vector<ProcessEntry> holders(pid_t under, const std::vector<ProcessEntry>& in,
                                  std::string_view holderPath) {
    std::unordered_map<pid_t, std::vector<const ProcessEntry*>> children;
    for (const auto& entry : in) children[entry.parent].push_back(&entry);

    std::vector<ProcessEntry> found;
    // A pid that was reused while the table was read can close a loop, so each pid is visited once.
    std::unordered_set<pid_t> visited{under};
    std::vector<pid_t> queue{under};
    for (std::size_t next = 0; next < queue.size(); ++next) {
        for (const ProcessEntry* child : children[queue[next]]) {
            if (!visited.insert(child->pid).second) continue;
            queue.push_back(child->pid);
            if (child->path == holderPath) found.push_back(*child);
        }
    }
    return found;
}

bool held(pid_t under, const std::vector<ProcessEntry>& in, std::string_view holderPath) {
    return !holders(under, in, holderPath).empty();
}

std::optional<std::vector<Seen>> seen(pid_t under, const std::vector<ProcessEntry>& in,
                                      std::string_view holderPath) {
    std::vector<Seen> seen;
    for (const auto& holder : holders(under, in, holderPath)) {
        if (!holder.started) return std::nullopt;
        seen.push_back({.pid = holder.pid, .started = *holder.started});
    }
    return seen;
}

}  // namespace tarnik::KeepAwakeHolder

std::size_t std::hash<tarnik::KeepAwakeHolder::Seen>::operator()(
    const tarnik::KeepAwakeHolder::Seen& seen) const noexcept {
    // The multiplication spreads the differences between start times over all bits before the pid is added.
    constexpr std::uint64_t spread = 0x9e3779b97f4a7c15;
    const auto started = static_cast<std::uint64_t>(seen.started.time_since_epoch().count());
    return std::hash<std::uint64_t>{}(started * spread + static_cast<std::uint64_t>(seen.pid));
}
