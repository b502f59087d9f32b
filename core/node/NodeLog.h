#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "core/foundation/Mutex.h"
#include "core/foundation/RotatingFile.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/FDReader.h"

namespace tarnik {

// The log file of the node's output. RotatingFile bounds the file's size and keeps one older copy.
//
// One per application. Shared with the readers of its pipes. A reader keeps the log alive while the pipe has
// a writer. Call from any thread. Chunks of several pipes are never mixed. Errors are not reported: output
// that can't be written is lost, and the next append tries again. A disk that hangs blocks append() and the
// threads of the readers, but not attach() and drain().
class NodeLog : public std::enable_shared_from_this<NodeLog> {
    struct Passkey {};

public:
    static constexpr std::int64_t defaultCap = 0x500000;  // bytes
    static constexpr Seconds openLimit = Seconds(1);      // for the check of the file in attach()

    // Opens nothing. `path` is absolute. A cap below 1 counts as 1.
    static std::shared_ptr<NodeLog> make(std::string path, std::int64_t capBytes = defaultCap,
                                         RotatingFile::Clock now = steadyNow);
    NodeLog(Passkey, std::string path, std::int64_t capBytes, RotatingFile::Clock now);

    // A pipe into the log for the output of one child.
    struct Output {
        UniqueFd writeEnd;               // close it once the child is started
        std::weak_ptr<FDReader> reader;  // call closeAfter() once the child has ended
    };

    // Opens a pipe. Returns an empty Output on failure, or if the file can't be opened within openLimit.
    Output attach();

    void append(std::string_view data);

    // Waits up to `timeout` until all output of the last attached pipe is written. Call this before the
    // program ends, so that the last output of a stopped node isn't lost.
    void drain(Seconds timeout);

private:
    bool opensInTime();

    // Locked while the disk is used. Only append() and the thread that opens the file wait for it.
    Mutex fileMutex_;
    RotatingFile file_ TARNIK_GUARDED_BY(fileMutex_);

    Mutex mutex_;
    Condition opened_;  // notified when isOpening_ becomes false
    bool isOpening_ TARNIK_GUARDED_BY(mutex_) = false;
    bool isOpen_ TARNIK_GUARDED_BY(mutex_) = false;  // the result of the last check
    std::weak_ptr<FDReader> lastReader_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik
