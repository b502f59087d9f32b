#include "app/platform/CopyOrder.h"

#include <algorithm>
#include <utility>

namespace tarnik::CopyOrder {

namespace {

std::optional<ProcessTime> startOf(pid_t pid, const std::vector<ProcessEntry>& table) {
    const auto entry = std::ranges::find(table, pid, &ProcessEntry::pid);
    return entry != table.end() ? entry->started : std::nullopt;
}

}  // namespace

std::vector<OtherCopy> startedBefore(pid_t ourselves, std::vector<OtherCopy> copies,
                                     const std::vector<ProcessEntry>& table) {
    const auto ourStart = startOf(ourselves, table);
    if (!ourStart) return {};
    std::erase_if(copies, [&](OtherCopy& copy) {
        copy.started = startOf(copy.pid, table);
        return !copy.started || std::pair(*copy.started, copy.pid) >= std::pair(*ourStart, ourselves);
    });
    return copies;
}

bool contains(const std::vector<ProcessEntry>& table, const OtherCopy& copy) {
    const auto start = startOf(copy.pid, table);
    return start && start == copy.started;
}

}  // namespace tarnik::CopyOrder
