#include "core/driver/ProcessInspection.h"

#include <cerrno>
#include <csignal>
#include <thread>

#include "core/foundation/Paths.h"

namespace tarnik::ProcessInspection {

namespace {

// No event tells of the end of a process that isn't our child on every system.
constexpr std::chrono::milliseconds lookInterval{25};

bool isThere(pid_t pid) {
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

// A true path first: taking off "x/.." by its text is wrong where x is a link.
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
    while (isThere(pid) && steadyNow() < deadline) std::this_thread::sleep_for(lookInterval);
    return !isThere(pid);
}

}  // namespace tarnik::ProcessInspection
