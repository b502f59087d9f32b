// Stops the drivers that a killed run of this program left running: DriverSocketDirectory::reapStale().
#include <cerrno>
#include <csignal>

#include "core/driver/DriverSocketDirectory.h"
#include "core/driver/ProcessInspection.h"
#include "core/process/StopSequence.h"

namespace tarnik {
namespace {

// Stops the leftover driver of the folder. Returns true if no driver uses the folder.
bool endDriver(const DriverSocketDirectory& directory, const std::string& expectedExecutable,
               const DriverSocketDirectory::Processes& processes) {
    const auto pid = directory.readProcessIdentifier();
    if (!pid || *pid < 2) return true;
    const int unreachable = processes.signal(*pid, 0);
    if (unreachable != 0 && unreachable != EPERM) return true;

    const auto runsDriver = [&] {
        const auto program = processes.executablePath(*pid);
        return program && !expectedExecutable.empty() &&
               ProcessInspection::samePath(*program, expectedExecutable);
    };
    // On Linux an unreaped process has no executable path, so its folder is kept until the next start.
    if (!runsDriver()) return false;
    const auto perform = [&](StopAction action) {
        // By the second step the pid may belong to another process.
        const bool isKill = action == StopAction::kill;
        if (isKill && (directory.readProcessIdentifier() != pid || !runsDriver())) return false;
        processes.signal(*pid, isKill ? SIGKILL : SIGTERM);
        return true;
    };
    const auto hasEnded = [&](Seconds timeout) { return processes.waitForExit(*pid, timeout); };
    return runStopSequence(StopSequences::leftoverDriver, perform, hasEnded) || hasEnded(Seconds::zero());
}

}  // namespace

DriverSocketDirectory::Processes DriverSocketDirectory::Processes::production() {
    return {.executablePath = ProcessInspection::executablePath,
            .signal = [](pid_t pid, int number) { return ::kill(pid, number) == 0 ? 0 : errno; },
            .waitForExit = ProcessInspection::waitForExit};
}

void DriverSocketDirectory::reapStale(const std::string& applicationSupport,
                                      const std::string& expectedExecutable, const Processes& processes) {
    for (const auto& directory : owned(applicationSupport)) {
        if (endDriver(directory, expectedExecutable, processes)) directory.cleanup();
    }
}

}  // namespace tarnik
