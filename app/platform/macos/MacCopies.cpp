#include "app/platform/macos/MacCopies.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

#include <unistd.h>

#include "app/platform/macos/RunningApplications.h"
#include "app/platform/macos/ShowWindowNotice.h"
#include "core/foundation/TarnikIdentity.h"
#include "core/process/MacProcesses.h"

namespace tarnik {

namespace {

using Table = std::vector<ProcessEntry>;

// None when the process is gone.
std::optional<ProcessTime> startOf(pid_t pid, const Table& table) {
    const auto entry = std::ranges::find(table, pid, &ProcessEntry::pid);
    return entry != table.end() ? entry->started : std::nullopt;
}

std::vector<OtherCopy> startedBefore() {
    const pid_t ourselves = ::getpid();
    const auto table = MacProcesses::table();
    const auto ourStart = table ? startOf(ourselves, *table) : std::nullopt;
    std::vector<OtherCopy> copies;
    if (!ourStart) return copies;
    for (auto& each : RunningApplications::withIdentifier(std::string(TarnikIdentity::bundleIdentifier))) {
        const auto start = startOf(each.pid, *table);
        // Of two started in the same moment the lower id counts as the first.
        if (!start || std::pair(*start, each.pid) >= std::pair(*ourStart, ourselves)) continue;
        copies.push_back({.pid = each.pid, .started = start, .bundlePath = std::move(each.bundlePath)});
    }
    return copies;
}

bool isRunning(const OtherCopy& copy) {
    if (copy.pid < 2 || (::kill(copy.pid, 0) != 0 && errno == ESRCH)) return false;
    const auto table = MacProcesses::table();
    return !table || startOf(copy.pid, *table) == copy.started;
}

// Not for another process that has got the id since.
std::function<void(const OtherCopy&)> whileRunning(void (*action)(pid_t)) {
    return [action](const OtherCopy& copy) {
        if (isRunning(copy)) action(copy.pid);
    };
}

}  // namespace

OtherCopies macCopies() {
    return {.startedBefore = startedBefore,
            .isRunning = isRunning,
            .terminate = whileRunning(RunningApplications::askToQuit),
            .forceTerminate = whileRunning(RunningApplications::forceToQuit),
            .activate = whileRunning(RunningApplications::bringToFront),
            .postShowWindow = ShowWindowNotice::post};
}

}  // namespace tarnik
