#include "core/process/PtyProcess.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "core/process/ProgramImage.h"
#include "core/process/Reaper.h"
#include "core/process/SpawnPlatform.h"

namespace tarnik {
namespace {

// A write of this size doesn't block on a terminal that polls as writable.
constexpr std::size_t writeBytes = 256;

// A waiting write checks for closeInput() at this interval.
constexpr std::chrono::milliseconds closeCheckInterval(20);

enum class Writable { yes, notYet, never };

// Waits up to closeCheckInterval for the terminal to accept input. Returns `never` if poll(2) fails, or if no
// process has the other side open. Linux would accept a write even then. Returns `yes` for POLLNVAL, because
// the write then reports the error.
Writable waitWritable(int fd) {
    pollfd entry{.fd = fd, .events = POLLOUT, .revents = 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(closeCheckInterval.count()));
    if (ready < 0) return errno == EINTR ? Writable::notYet : Writable::never;
    if (ready == 0) return Writable::notYet;
    return (entry.revents & (POLLHUP | POLLERR)) == 0 ? Writable::yes : Writable::never;
}

class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~SignalsBlocked() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_{};
};

}  // namespace

std::expected<std::shared_ptr<PtyProcess>, SystemError> PtyProcess::spawn(const SpawnRequest& request,
                                                                          ChildProcess::OnExit onExit) {
    auto reaper = Reaper::prepare(std::move(onExit));
    if (!reaper) return std::unexpected(reaper.error());
    const ProgramImage image(request);
    winsize size{};
    size.ws_row = rows;
    size.ws_col = columns;

    int number = -1;
    const SignalsBlocked blocked;  // the child must not run our signal handlers before its exec
    const pid_t pid = forkOnTerminal(number, size);
    if (pid < 0) return std::unexpected(SystemError{"forkpty", errno});
    if (pid == 0) {
        image.become();
        ::_exit(127);
    }
    auto child = std::move(*reaper).adopt(pid);
    const UniqueFd opened(number);
    // The duplicate is above 2 and close-on-exec. A child that another thread starts before this line closes
    // the original before its exec.
    auto pty = std::make_shared<PtyProcess>(child, UniqueFd::duplicate(opened.get()));
    if (pty->hasInput()) return pty;
    const SystemError error{"forkpty", errno};
    child->signal(SIGKILL);
    return std::unexpected(error);
}

PtyProcess::PtyProcess(std::shared_ptr<ChildProcess> child, UniqueFd master)
    : child_(std::move(child)),
      master_(std::move(master)),
      input_(master_ ? UniqueFd::duplicate(master_.get()) : UniqueFd()) {}

bool PtyProcess::hasInput() {
    const MutexLock lock(writeMutex_);
    return static_cast<bool>(input_);
}

UniqueFd PtyProcess::takeMaster() {
    return std::move(master_);
}

bool PtyProcess::write(std::string_view text, Seconds timeout) {
    const MutexLock lock(writeMutex_);
    const TimePoint deadline = after(steadyNow(), timeout);
    while (!closed_) {
        if (text.empty()) return true;
        const Writable writable = waitWritable(input_.get());
        if (writable == Writable::never) return false;
        if (writable == Writable::notYet) {
            if (steadyNow() >= deadline) return false;
            continue;
        }
        const ssize_t count = ::write(input_.get(), text.data(), std::min(text.size(), writeBytes));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return false;
}

void PtyProcess::closeInput() {
    closed_ = true;  // ends a write that holds the lock
    const MutexLock lock(writeMutex_);
    input_.reset();
}

}  // namespace tarnik
