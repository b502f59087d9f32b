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

// The log file of the node's output, with a bounded size and one older copy; see RotatingFile for its errors.
//
// One per application. Shared with the readers of its pipes, which keep it alive while a pipe has a writer.
// Call from any thread; chunks of several pipes are never mixed. Errors are not reported: output that can't
// be written is lost, and the next append tries again.
class NodeLog : public std::enable_shared_from_this<NodeLog> {
    struct Passkey {};

public:
    static constexpr std::int64_t defaultCap = 0x500000;  // bytes

    // Opens nothing. `path` is absolute. A cap below 1 counts as 1.
    static std::shared_ptr<NodeLog> make(std::string path, std::int64_t capBytes = defaultCap,
                                         RotatingFile::Clock now = steadyNow);
    NodeLog(Passkey, std::string path, std::int64_t capBytes, RotatingFile::Clock now);

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
    Mutex mutex_;
    RotatingFile file_ TARNIK_GUARDED_BY(mutex_);
    std::weak_ptr<FDReader> lastReader_ TARNIK_GUARDED_BY(mutex_);
};

}  // namespace tarnik
