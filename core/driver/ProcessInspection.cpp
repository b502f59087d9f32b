#include "core/driver/ProcessInspection.h"

#include <cerrno>
#include <csignal>
#include <thread>

#include "core/foundation/Paths.h"

namespace tarnik::ProcessInspection {

namespace {

// Polled, because not every system has an event for the end of a process that isn't our child.
constexpr std::chrono::milliseconds checkInterval{25};

bool processExists(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

// Resolves links before "..", because removing "x/.." as text is wrong if x is a link.
std::string resolved(const std::string& path) {
    const auto real = realPath(path);
    return real ? *real : resolvingLinks(path);
}

}  // namespace

bool samePath(const std::string& one, const std::string& other) {
    return resolved(one) == resolved(other);
}

bool waitForExit(pid_t pid, Seconds timeout) {
    if (pid < 2) return true;
    const TimePoint deadline = after(steadyNow(), timeout);
    while (processExists(pid) && steadyNow() < deadline) std::this_thread::sleep_for(checkInterval);
    return !processExists(pid);
}

}  // namespace tarnik::ProcessInspection
