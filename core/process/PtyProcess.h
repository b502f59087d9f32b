#pragma once

#include <atomic>
#include <expected>
#include <memory>
#include <string_view>

#include "core/foundation/Mutex.h"
#include "core/foundation/SystemError.h"
#include "core/foundation/UniqueFd.h"
#include "core/process/ChildProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// A child on a new pseudo-terminal, for programs that interact with a person.
//
// Shared by the users of the child. One reader owns the master descriptor and may close it at any time.
// Writes use a duplicate, so that they never use a number that was closed and reused.
class PtyProcess {
public:
    static constexpr unsigned short rows = 24;
    static constexpr unsigned short columns = 100;
    static constexpr Seconds writeTimeout = Seconds(5);

    // The terminal replaces the request's three Stdio. `onExit` is called as by Spawner::spawn. If the
    // program can't be run, this succeeds and the child exits with 127. The error's `call` is "forkpty" or
    // "pthread_create". If no descriptor is free after the fork, the child is killed, an error is returned
    // and `onExit` is still called.
    static std::expected<std::shared_ptr<PtyProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                         ChildProcess::OnExit onExit = {});

    // `master` is the controlling side of the terminal on which `child` runs.
    PtyProcess(std::shared_ptr<ChildProcess> child, UniqueFd master);

    ChildProcess& child() const { return *child_; }

    // Returns the controlling side for reading, close-on-exec. A second call returns an empty UniqueFd. When
    // the child and its descendants have closed the terminal, read(2) returns 0 (Darwin) or fails with EIO
    // (Linux).
    UniqueFd takeMaster();

    // Writes `text` as keyboard input. Returns false on an error, if the other side is closed, if the
    // terminal hasn't accepted the whole text within `timeout`, and after closeInput(). Concurrent writes run
    // one after another; each `timeout` starts with its own write. Call from any thread.
    bool write(std::string_view text, Seconds timeout = writeTimeout);

    // Makes the current write and all later writes return false. Sends nothing to the child. Call from any
    // thread.
    void closeInput();

private:
    bool hasInput();

    std::shared_ptr<ChildProcess> child_;
    UniqueFd master_;
    Mutex writeMutex_;
    UniqueFd input_ TARNIK_GUARDED_BY(writeMutex_);  // empty once closed
    std::atomic<bool> closed_ = false;
};

}  // namespace tarnik
