#pragma once

#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "core/foundation/Files.h"
#include "core/foundation/Time.h"

namespace tarnik {

// The private folder with a driver's socket and pid file: APPLICATION-SUPPORT/tarnik/cua/ID, where ID is 16
// hexadecimal digits. A value; nothing holds the folder open.
//
// Trusts nothing: no link is followed on the way from the application support folder down, and what isn't
// provably the folder that was made is left alone. A folder that others may write to above it only keeps it
// from working.
struct DriverSocketDirectory {
    struct Failure {
        enum class Kind { directory, socketPathTooLong };

        Kind kind = Kind::directory;
        std::string reason;  // of `directory`

        bool operator==(const Failure&) const = default;
    };

    // What is asked of processes that are not our children.
    struct Processes {
        std::function<std::optional<std::string>(pid_t)> executablePath;
        std::function<int(pid_t, int number)> signal;  // 0, or the errno of kill(2)
        std::function<bool(pid_t, Seconds timeout)> waitForExit;

        static Processes production();
    };

    std::string path;
    std::string socketPath;  // the driver makes the socket
    dev_t device = 0;        // of the folder that was made
    ino_t inode = 0;

    // Makes a new one. The folders above it are made too, but not those above `applicationSupport`.
    static std::expected<DriverSocketDirectory, Failure> create(const std::string& applicationSupport);

    std::string pidFilePath() const;
    bool isUnchangedAndOwned() const;

    // Replaces an earlier pid file.
    std::expected<void, SystemError> writeProcessIdentifier(pid_t pid) const;

    // None when there is no such file of ours, or when it holds anything but a positive 32-bit number.
    std::optional<pid_t> readProcessIdentifier() const;

    // Removes the socket, the pid file and the folder; nothing when the folder isn't the one that was made.
    // Never fails: what can't be removed stays.
    void cleanup() const;

    // Those that are there by now, made by whomever, provided that only this user may use them.
    static std::vector<DriverSocketDirectory> owned(const std::string& applicationSupport);

    // Ends the drivers that an earlier run left behind and removes their folders. Only a process that runs
    // `expectedExecutable` gets a signal. Blocks for up to 2 s for each that doesn't leave. Never fails.
    static void reapStale(const std::string& applicationSupport, const std::string& expectedExecutable,
                          const Processes& processes);

    // Whether a connection to the socket succeeds at once. Never blocks: a listener whose queue is full
    // doesn't accept one now.
    static bool acceptsConnections(const std::string& socketPath);

    bool operator==(const DriverSocketDirectory&) const = default;
};

std::string describe(const DriverSocketDirectory::Failure& failure);

}  // namespace tarnik
