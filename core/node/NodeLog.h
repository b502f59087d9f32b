#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/foundation/Mutex.h"
#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/FDReader.h"

namespace tarnik {

// The log file of the node's output. Its size is bounded; one older copy is kept at path + ".1".
//
// One per application. Shared with the readers of its pipes, which keep it alive while a pipe has a writer.
// Call from any thread; chunks of several pipes are never mixed. Errors are not reported: output that can't
// be written is lost, and the next append tries again.
//
// The chunk that makes the file reach the cap also rotates it.
//
//   error                                 effect
//   the path is a link, or not a regular  the file is not opened; links are not followed, a FIFO never blocks
//     file of ours
//   file or folder deleted or replaced    noticed within checkInterval; the file is created or opened again,
//                                         and the older copy is kept
//   the file can't be renamed             it is truncated; if that fails too, chunks are lost until one of
//                                         the two succeeds
//   disk full                             the rest of the chunk is lost; the file remains open
class NodeLog : public std::enable_shared_from_this<NodeLog> {
    struct Passkey {};

public:
    using Clock = std::function<TimePoint()>;

    static constexpr std::int64_t defaultCap = 0x500000;  // bytes
    static constexpr Seconds checkInterval = Seconds(1);

    // Opens nothing. `path` is absolute. A cap below 1 counts as 1.
    static std::shared_ptr<NodeLog> make(std::string path, std::int64_t capBytes = defaultCap,
                                         Clock now = steadyNow);
    NodeLog(Passkey, std::string path, std::int64_t capBytes, Clock now);

    // A pipe into the log for the output of one child.
    struct Output {
        UniqueFd writeEnd;               // close it once the child is started
        std::weak_ptr<FDReader> reader;  // call closeAfter() once the child has ended
    };

    // Opens a pipe. Returns an output without a write end if the file or a pipe can't be opened.
    Output attach();

    void append(std::string_view data);

    // Waits up to `timeout` until the last attached pipe has ended and its output is written. Call it before
    // the program ends, so that the last output of a stopped node isn't lost.
    void drain(Seconds timeout);

private:
    bool isOpen() TARNIK_REQUIRES(mutex_);
    bool reopen() TARNIK_REQUIRES(mutex_);
    bool open() TARNIK_REQUIRES(mutex_);
    bool isAtPath() const TARNIK_REQUIRES(mutex_);
    void rotate() TARNIK_REQUIRES(mutex_);

    const std::string path_;
    const std::int64_t cap_;
    const Clock now_;

    Mutex mutex_;
    UniqueFd file_ TARNIK_GUARDED_BY(mutex_);
    std::int64_t size_ TARNIK_GUARDED_BY(mutex_) = 0;
    TimePoint nextCheck_ TARNIK_GUARDED_BY(mutex_);
    std::weak_ptr<FDReader> lastReader_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik
