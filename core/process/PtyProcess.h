#pragma once

#include <atomic>
#include <expected>
#include <memory>
#include <mutex>
#include <string_view>

#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ChildProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// A child on a new pseudo-terminal, for programs that talk to a person.
//
// Shared by whoever talks to the child. The terminal is read by one reader, who takes the master; writing has
// a descriptor of its own, so that the reader closing its end never leaves a number that a write could hit.
class PtyProcess {
public:
    static constexpr unsigned short rows = 24;
    static constexpr unsigned short columns = 100;
    static constexpr Seconds writeTimeout = Seconds(5);

    // The request's three Stdio are ignored: all are the terminal. `onExit` as in Spawner::spawn. A program
    // that can't be run is no error here: the child exits with 127. Fails with call "forkpty"; where
    // descriptors ran out after the fork, the child is killed and `onExit` still hears of it.
    static std::expected<std::shared_ptr<PtyProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                         ChildProcess::OnExit onExit = {});

    // Takes over the controlling side of a terminal on which `child` already runs.
    PtyProcess(std::shared_ptr<ChildProcess> child, UniqueFd master);

    ChildProcess& child() const { return *child_; }

    // The controlling side, close-on-exec, to read from: once, to one reader, who owns it then. It ends with
    // 0 (Darwin) or EIO (Linux) when the child and all its descendants have left the terminal.
    UniqueFd takeMaster();

    // Types `text`. Returns false after closeInput(), which also ends a write that waits, on a dead terminal,
    // and if the terminal hasn't taken all of it within `timeout`. Two texts are never mixed. Call from any
    // thread.
    bool write(std::string_view text, Seconds timeout = writeTimeout);

    // Later writes return false. Sends nothing to the child. Call from any thread.
    void closeInput();

private:
    std::shared_ptr<ChildProcess> child_;
    UniqueFd master_;
    std::mutex writeMutex_;
    UniqueFd input_;  // guarded by writeMutex_; empty once closed
    std::atomic<bool> closed_ = false;
};

}  // namespace tarnik
