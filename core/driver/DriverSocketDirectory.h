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

// The private folder of a driver's socket and pid file: APPLICATION-SUPPORT/tarnik/cua/ID, where ID is 16
// hexadecimal digits. A value that keeps no descriptor.
//
// create() follows no link at or below the application support folder. Each change first compares the
// folder's device and inode and then uses its descriptor, so a folder that was replaced is never changed.
struct DriverSocketDirectory {
    struct Failure {
        enum class Kind { directory, socketPathTooLong };

        Kind kind = Kind::directory;
        std::string reason;  // for `directory`

        bool operator==(const Failure&) const = default;
    };

    // The effects on processes that are not our children.
    struct Processes {
        std::function<std::optional<std::string>(pid_t)> executablePath;
        std::function<int(pid_t, int number)> signal;  // returns 0 or the errno of kill(2)
        std::function<bool(pid_t, Seconds timeout)> waitForExit;

        static Processes production();
    };

    std::string path;
    std::string socketPath;  // the driver creates the socket
    dev_t device = 0;        // of the folder when this value was made
    ino_t inode = 0;

    // Creates a new folder. Also creates `applicationSupport` and the folders below it if they don't exist.
    static std::expected<DriverSocketDirectory, Failure> create(const std::string& applicationSupport);

    std::string pidFilePath() const;
    bool isUnchangedAndOwned() const;

    // Replaces the pid file.
    std::expected<void, SystemError> writeProcessIdentifier(pid_t pid) const;

    // Returns std::nullopt if this user has no pid file there, or if the file's content is not a positive
    // 32-bit number.
    std::optional<pid_t> readProcessIdentifier() const;

    // Removes the socket, the pid file and the folder, unless the folder was replaced. Ignores errors.
    void cleanup() const;

    // Returns the existing private folders of this user.
    static std::vector<DriverSocketDirectory> owned(const std::string& applicationSupport);

    // Stops the drivers that an earlier run left running. Removes the folders that no driver uses. Signals
    // only processes that run `expectedExecutable`. Blocks for up to 2 s per driver. Ignores errors.
    static void reapStale(const std::string& applicationSupport, const std::string& expectedExecutable,
                          const Processes& processes);

    // Returns true if a connection to the socket succeeds at once. Never blocks.
    static bool acceptsConnections(const std::string& socketPath);

    bool operator==(const DriverSocketDirectory&) const = default;
};

std::string describe(const DriverSocketDirectory::Failure& failure);

}  // namespace tarnik
