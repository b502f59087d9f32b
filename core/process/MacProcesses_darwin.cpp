#include "core/process/MacProcesses.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <libproc.h>
#include <mach/mach_time.h>
#include <sys/proc_info.h>
#include <sys/sysctl.h>

#include "core/process/ProcessTree.h"

namespace tarnik::MacProcesses {

namespace {

constexpr std::size_t roomForNewOnes = 64;
constexpr std::size_t mostChildren = 1024;
constexpr double nanosecondsPerSecond = 1e9;

static_assert(sizeof(struct proc_bsdinfo) == 136 && sizeof(struct proc_taskinfo) == 96);

template <class Info>
std::optional<Info> info(pid_t pid, int flavor) {
    Info found{};
    constexpr int size = sizeof(Info);
    if (::proc_pidinfo(pid, flavor, 0, &found, size) != size) return std::nullopt;
    return found;
}

std::optional<ProcessEntry> entry(pid_t pid) {
    const auto found = info<struct proc_bsdinfo>(pid, PROC_PIDTBSDINFO);
    if (!found) return std::nullopt;
    return ProcessEntry{.pid = pid,
                        .parent = static_cast<pid_t>(found->pbi_ppid),
                        .path = executablePath(pid),
                        .started = ProcessTime(std::chrono::seconds(found->pbi_start_tvsec) +
                                               std::chrono::microseconds(found->pbi_start_tvusec))};
}

int bytes(const std::vector<pid_t>& pids) {
    return static_cast<int>(pids.size() * sizeof(pid_t));
}

std::optional<std::vector<pid_t>> children(pid_t parent) {
    std::vector<pid_t> pids(mostChildren);
    errno = 0;
    const int count = ::proc_listchildpids(parent, pids.data(), bytes(pids));
    if (count < 0 || (count == 0 && errno != 0)) return std::nullopt;
    if (static_cast<std::size_t>(count) >= pids.size()) return std::nullopt;  // there may be more
    pids.resize(static_cast<std::size_t>(count));
    return pids;
}

// The kernel counts processor time in ticks of the real processor. mach_timebase_info(2) may describe other
// ticks: under Rosetta the call returns 1/1.
std::optional<double> ticksPerSecond() {
    std::uint64_t frequency = 0;
    std::size_t size = sizeof frequency;
    if (::sysctlbyname("hw.tbfrequency", &frequency, &size, nullptr, 0) == 0 && frequency != 0) {
        return static_cast<double>(frequency);
    }
    struct mach_timebase_info base = {};
    if (::mach_timebase_info(&base) != 0 || base.numer == 0 || base.denom == 0) return std::nullopt;
    return nanosecondsPerSecond * base.denom / base.numer;
}

// Returns true if the system's lists of children are usable. A failed query may return an empty list, so this
// checks that the list of the process's parent contains the process.
bool isListed(pid_t pid) {
    const auto found = entry(pid);
    const auto siblings = found ? children(found->parent) : std::nullopt;
    return siblings && std::ranges::find(*siblings, pid) != siblings->end();
}

}  // namespace

std::optional<std::vector<ProcessEntry>> table() {
    const int count = ::proc_listallpids(nullptr, 0);
    if (count < 1) return std::nullopt;
    std::vector<pid_t> pids(static_cast<std::size_t>(count) + roomForNewOnes);
    const int listed = ::proc_listallpids(pids.data(), bytes(pids));
    if (listed < 1) return std::nullopt;
    pids.resize(std::min(static_cast<std::size_t>(listed), pids.size()));

    std::vector<ProcessEntry> entries;
    entries.reserve(pids.size());
    for (const pid_t pid : pids) {
        if (pid < 1) continue;
        if (auto found = entry(pid)) entries.push_back(std::move(*found));
    }
    return entries;
}

std::optional<std::vector<ProcessEntry>> tableUnder(pid_t ancestor) {
    const ProcessTree tree{.children = children, .entry = entry};
    if (isListed(ancestor)) {
        if (auto family = tree.under(ancestor)) return family;
    }
    return table();
}

std::optional<std::string> executablePath(pid_t pid) {
    std::array<char, 4096> path{};
    const int length = ::proc_pidpath(pid, path.data(), static_cast<uint32_t>(path.size()));
    if (length < 1) return std::nullopt;
    return std::string(path.data(), std::min(static_cast<std::size_t>(length), path.size()));
}

std::optional<double> cpuSeconds(pid_t pid) {
    const auto found = info<struct proc_taskinfo>(pid, PROC_PIDTASKINFO);
    const auto frequency = ticksPerSecond();
    if (!found || !frequency) return std::nullopt;
    return static_cast<double>(found->pti_total_user + found->pti_total_system) / *frequency;
}

}  // namespace tarnik::MacProcesses
