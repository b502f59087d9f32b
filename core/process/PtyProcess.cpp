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

// A terminal that says it can take input takes at least this much without blocking.
constexpr std::size_t writeBytes = 256;

// How soon a write that waits for the terminal notices closeInput().
constexpr std::chrono::milliseconds closeCheckInterval(20);

enum class Writable { yes, notYet, never };

// Waits a moment for the terminal to take input. It never will when nobody is left on its other side,
// although Linux would still accept the bytes. Where a system can't tell (POLLNVAL), the write itself will.
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
    const SignalsBlocked blocked;  // the child must not run our handlers before it has become its program
    const pid_t pid = forkOnTerminal(number, size);
    if (pid < 0) return std::unexpected(SystemError{"forkpty", errno});
    if (pid == 0) {
        image.become();
        ::_exit(127);
    }
    auto child = std::move(*reaper).adopt(pid);
    const UniqueFd opened(number);
    // Above 2 and close-on-exec from here on; every child of ours closes it in the moment before.
    auto pty = std::make_shared<PtyProcess>(child, UniqueFd::duplicate(opened.get()));
    if (pty->input_) return pty;
    const SystemError error{"forkpty", errno};
    child->signal(SIGKILL);
    return std::unexpected(error);
}

PtyProcess::PtyProcess(std::shared_ptr<ChildProcess> child, UniqueFd master)
    : child_(std::move(child)),
      master_(std::move(master)),
      input_(master_ ? UniqueFd::duplicate(master_.get()) : UniqueFd()) {}

UniqueFd PtyProcess::takeMaster() {
    return std::move(master_);
}

bool PtyProcess::write(std::string_view text, Seconds timeout) {
    const std::lock_guard lock(writeMutex_);
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
    const std::lock_guard lock(writeMutex_);
    input_.reset();
}

}  // namespace tarnik
