#pragma once

#include <expected>
#include <memory>

#include <sys/types.h>

#include "core/foundation/SystemError.h"
#include "core/process/ChildProcess.h"

namespace tarnik {

// A thread that waits for one child. It is started before the child, so that no child is left unreaped if no
// thread can be started.
//
// The thread may outlive this object and the handles. It ends when its child is reaped and reported, and is
// never joined.
class Reaper {
public:
    // Starts the thread, which waits for adopt(). It calls `onExit` once, after the status is stored, without
    // a lock. Fails with call "pthread_create".
    static std::expected<Reaper, SystemError> prepare(ChildProcess::OnExit onExit);

    // Passes the child to the thread, which reaps it even if the handle is destroyed.
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
