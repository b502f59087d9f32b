#pragma once

#include <expected>
#include <memory>

#include <sys/types.h>

#include "core/foundation/SystemError.h"
#include "core/process/ChildProcess.h"

namespace tarnik {

// Prepares a thread that waits for one child. The thread is started before the child. If no thread can start,
// no child is started.
//
// The thread may outlive this object and the returned ChildProcess. The thread ends when `onExit` has
// returned, and is never joined.
class Reaper {
public:
    // Starts the thread, which waits for adopt(). The thread calls `onExit` once, after it has stored the
    // status and with no lock held. The error's `call` is "pthread_create".
    static std::expected<Reaper, SystemError> prepare(ChildProcess::OnExit onExit);

    // Passes the child to the thread. The child is reaped even if the returned ChildProcess is destroyed.
    std::shared_ptr<ChildProcess> adopt(pid_t pid) &&;

    // Ends the thread if adopt() was not called.
    ~Reaper();
    Reaper(Reaper&&) = default;
    Reaper& operator=(Reaper&&) = delete;
    Reaper(const Reaper&) = delete;
    Reaper& operator=(const Reaper&) = delete;

private:
    struct Assignment;
    explicit Reaper(std::shared_ptr<Assignment> assignment);

    std::shared_ptr<Assignment> assignment_;
};

}  // namespace tarnik
