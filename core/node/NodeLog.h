#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

#include "core/foundation/Time.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/FDReader.h"

namespace tarnik {

// The file that everything the node prints is copied into, bounded in size, with one older copy beside it at
// path + ".1".
//
// One per application, shared with the readers of its pipes, which keep it as long as a pipe has a writer.
// Call from any thread; chunks from several pipes follow one another whole. Nothing is ever reported: what
// can't be written is lost, and each later append tries afresh.
//
// The file grows to the cap, and beyond it by at most the chunk that reached it, and is then moved aside.
//
//   trouble                               what happens
//   at the path is no regular file of     nothing is opened; no link is followed, no FIFO waited for
//     ours, or a link
//   file or folder gone or exchanged      seen by an append, within checkInterval; made or opened anew, the
//                                         older copy left alone
//   the file can't be moved aside         it is emptied; where it can't be emptied either, chunks are lost
//                                         until one of the two succeeds
//   disk full                             the rest of the chunk is dropped, the file stays open
class NodeLog : public std::enable_shared_from_this<NodeLog> {
    struct Passkey {};

public:
    using Clock = std::function<TimePoint()>;

    static constexpr std::int64_t defaultCap = 0x500000;  // bytes
    static constexpr Seconds checkInterval = Seconds(1);

    // Opens nothing yet. `path` is absolute; a cap below 1 counts as 1.
    static std::shared_ptr<NodeLog> make(std::string path, std::int64_t capBytes = defaultCap,
                                         Clock now = steadyNow);
    NodeLog(Passkey, std::string path, std::int64_t capBytes, Clock now);

    // A new pipe into the log, for one child's outputs.
    struct Output {
        UniqueFd writeEnd;               // to be closed once the child has it
        std::weak_ptr<FDReader> reader;  // to be closed, after a grace, once the child has ended
    };

    // Returns an output without a write end when the file can't be opened or no pipe can be had.
    Output attach();

    void append(std::string_view data);

    // Waits, at most `timeout`, until all that came through the last attached pipe is in the file: for the
    // end of the program, which would otherwise take a stopped node's last words with it.
    void drain(Seconds timeout);

private:
    // All of these with the lock held.
    bool isOpen();
    bool reopen();
    bool open();
    bool isAtPath() const;
    void rotate();

    const std::string path_;
    const std::int64_t cap_;
    const Clock now_;

    std::mutex mutex_;
    UniqueFd file_;
    std::int64_t size_ = 0;
    TimePoint nextCheck_;
    std::weak_ptr<FDReader> lastReader_;
};

}  // namespace tarnik
