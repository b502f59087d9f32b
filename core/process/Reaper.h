#pragma once

#include <expected>
#include <memory>

#include <sys/types.h>

#include "core/foundation/SystemError.h"
#include "core/process/ChildProcess.h"

namespace tarnik {

// A thread that waits for one child. It is started before the child: if no thread can be started, neither is
// the child, so that no child is lost or left a zombie.
//
// The thread outlives this object and the handles: it ends when its child is reaped and reported. Nobody
// joins it.
class Reaper {
public:
    // Starts the thread, which waits for adopt(). It calls `onExit` once, after the status is stored, without
    // a lock. Fails with call "pthread_create".
    static std::expected<Reaper, SystemError> prepare(ChildProcess::OnExit onExit);

    // Passes the child to the thread, which reaps it whatever happens to the handle.
    std::shared_ptr<ChildProcess> adopt(pid_t pid) &&;

    // Ends the thread if it has no child.
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
