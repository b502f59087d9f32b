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
// Shared by the users of the child. One reader reads the terminal through the master descriptor. Writes use a
// second descriptor, so that they never use a reused number after the reader has closed its own.
class PtyProcess {
public:
    static constexpr unsigned short rows = 24;
    static constexpr unsigned short columns = 100;
    static constexpr Seconds writeTimeout = Seconds(5);

    // The terminal replaces the request's three Stdio, which are ignored. `onExit` is called as by
    // Spawner::spawn. A program that can't be run is not an error here; the child exits with 127. Fails with
    // call "forkpty" or "pthread_create". If no descriptor is left after the fork, the child is killed and
    // `onExit` is still called.
    static std::expected<std::shared_ptr<PtyProcess>, SystemError> spawn(const SpawnRequest& request,
                                                                         ChildProcess::OnExit onExit = {});

    // Takes ownership of the controlling side of a terminal on which `child` runs.
    PtyProcess(std::shared_ptr<ChildProcess> child, UniqueFd master);

    ChildProcess& child() const { return *child_; }

    // Returns the controlling side for reading, close-on-exec. The caller owns it; a second call returns an
    // empty owner. Reading ends with 0 (Darwin) or EIO (Linux) when the child and its descendants have closed
    // the terminal.
    UniqueFd takeMaster();

    // Writes `text` as keyboard input. Returns false if the other side is closed, if the terminal hasn't
    // accepted all of the text within `timeout`, and after closeInput(), which also ends a waiting write.
    // Concurrent writes are not interleaved. Call from any thread.
    bool write(std::string_view text, Seconds timeout = writeTimeout);

    // Makes later writes return false. Sends nothing to the child. Call from any thread.
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
