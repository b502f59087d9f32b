#include "core/process/Reaper.h"

#include <cerrno>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/wait.h>

#include "core/foundation/Mutex.h"
#include "core/foundation/ThreadName.h"

namespace tarnik {

// Shared by the thread that starts the child and the thread that waits for it.
struct Reaper::Assignment {
    Mutex mutex;
    Condition changed;
    bool settled TARNIK_GUARDED_BY(mutex) = false;
    std::shared_ptr<ChildProcess> child TARNIK_GUARDED_BY(mutex);  // null if no child was started

    void settle(std::shared_ptr<ChildProcess> with) {
        {
            const MutexLock lock(mutex);
            settled = true;
            child = std::move(with);
        }
        changed.notifyOne();
    }

    std::shared_ptr<ChildProcess> wait() {
        MutexLock lock(mutex);
        while (!settled) changed.wait(lock);
        return std::move(child);
    }
};

namespace {

// Waits for the end of the child without reaping it, so that its pid can't be reused yet.
void awaitEnd(pid_t pid) {
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {}
}

ExitStatus reap(pid_t pid) {
    int word = 0;
    pid_t reaped = 0;
    do reaped = ::waitpid(pid, &word, 0);
    while (reaped < 0 && errno == EINTR);
    // The status is unknown if SIGCHLD is ignored or other code has reaped the child.
    return reaped == pid ? ExitStatus::fromWaitStatus(word) : ExitStatus::exited(255);
}

void watch(const std::shared_ptr<ChildProcess>& child, const ChildProcess::OnExit& onExit) {
    const pid_t pid = child->pid();
    setThreadName("tarnik.reap." + std::to_string(pid));
    awaitEnd(pid);
    child->markReaped([pid] { return reap(pid); });
    if (onExit) onExit(*child->exitStatus());
}

}  // namespace

std::expected<Reaper, SystemError> Reaper::prepare(ChildProcess::OnExit onExit) {
    auto assignment = std::make_shared<Assignment>();
    try {
        std::thread([assignment, onExit = std::move(onExit)]() mutable {
            const auto child = assignment->wait();
            assignment.reset();
            if (child) watch(child, onExit);
        }).detach();
    } catch (const std::system_error& error) {
        return std::unexpected(SystemError{"pthread_create", error.code().value()});
    }
    return Reaper(std::move(assignment));
}

Reaper::Reaper(std::shared_ptr<Assignment> assignment) : assignment_(std::move(assignment)) {}

Reaper::~Reaper() {
    if (assignment_) assignment_->settle(nullptr);
}

std::shared_ptr<ChildProcess> Reaper::adopt(pid_t pid) && {
    auto child = std::make_shared<ChildProcess>(pid);
    std::exchange(assignment_, nullptr)->settle(child);
    return child;
}

}  // namespace tarnik
