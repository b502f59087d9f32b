#include "core/process/Reaper.h"

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <sys/wait.h>

#include "core/foundation/ThreadName.h"

namespace tarnik {

// What the maker of the child and the waiting thread share.
struct Reaper::Assignment {
    std::mutex mutex;
    std::condition_variable changed;
    bool settled = false;                 // a child was given, or there will be none
    std::shared_ptr<ChildProcess> child;  // none: nothing to wait for

    void settle(std::shared_ptr<ChildProcess> with) {
        {
            const std::lock_guard lock(mutex);
            settled = true;
            child = std::move(with);
        }
        changed.notify_one();
    }

    std::shared_ptr<ChildProcess> wait() {
        std::unique_lock lock(mutex);
        changed.wait(lock, [this] { return settled; });
        return std::move(child);
    }
};

namespace {

// Returns when the child has ended, leaving it unreaped, so that its pid can't be given to another yet.
void awaitEnd(pid_t pid) {
    siginfo_t info{};
    while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) < 0 && errno == EINTR) {}
}

ExitStatus reap(pid_t pid) {
    int word = 0;
    pid_t reaped = 0;
    do reaped = ::waitpid(pid, &word, 0);
    while (reaped < 0 && errno == EINTR);
    // Somebody else took it (SIGCHLD ignored, a stray wait for any child): how it ended can't be known.
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
