#pragma once

#include <expected>
#include <memory>

#include <sys/types.h>

#include "core/foundation/SystemError.h"
#include "core/process/ChildProcess.h"

namespace tarnik {

// A thread that waits for one child, made before the child is: where no thread can be had, no child is
// started, and so none is ever lost or left a zombie.
//
// The thread outlives this object and the handles given out: it ends when its child has been reaped and
// reported. That is why nobody joins it.
class Reaper {
public:
    // Starts the thread, which waits to be given its child. `onExit` is called on it, once, after the end is
    // stored and with no lock held. Fails with call "pthread_create".
    static std::expected<Reaper, SystemError> prepare(ChildProcess::OnExit onExit);

    // Gives the thread its child; from here on the child is reaped whatever happens to the handle.
    std::shared_ptr<ChildProcess> adopt(pid_t pid) &&;

    // Without a child, the thread ends.
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
