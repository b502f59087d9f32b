#include "app/console/ConsoleLoop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace tarnik {

ConsoleLoop::ConsoleLoop(int inputFd, Spawner::Pipe wake) : inputFd_(inputFd), wake_(std::move(wake)) {}

void ConsoleLoop::post(Task task) {
    const MutexLock lock(mutex_);
    posted_.push_back(std::move(task));
    if (posted_.size() > 1) return;  // the first task has woken the loop
    const char byte = 0;
    while (::write(wake_.writeEnd.get(), &byte, 1) < 0 && errno == EINTR) {}
}

void ConsoleLoop::quit() {
    post([this] { running_ = false; });
}

MainThread ConsoleLoop::mainThread() {
    const auto weak = weak_from_this();
    return {.post =
                [weak](Task task) {
                    if (const auto loop = weak.lock()) loop->post(std::move(task));
                },
            .repeat =
                [weak](Seconds interval, const Task& task) {
                    const auto loop = weak.lock();
                    return loop ? loop->repeat(interval, task) : RepeatingTimer(nullptr);
                }};
}

RepeatingTimer ConsoleLoop::repeat(Seconds interval, const Task& task) {
    const auto repeats = std::make_shared<bool>(true);
    schedule(repeats, interval, task);
    return RepeatingTimer([repeats] { *repeats = false; });
}

// The interval begins now, so repetitions that were missed during a system sleep are skipped.
void ConsoleLoop::schedule(const std::shared_ptr<bool>& repeats, Seconds interval, const Task& task) {
    due_.push(after(steadyNow(), interval), [this, repeats, interval, task] {
        if (*repeats) task();
        if (*repeats) schedule(repeats, interval, task);
    });
}

int ConsoleLoop::millisecondsToNextDue() const {
    const auto due = due_.nextDue();
    if (!due) return -1;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - steadyNow()).count();
    return static_cast<int>(std::clamp<decltype(wait)>(wait, 0, INT_MAX));
}

void ConsoleLoop::runDue() {
    while (const auto task = due_.take(steadyNow())) (*task)();
}

void ConsoleLoop::run(const Handlers& handlers) {
    while (running_) {
        std::array<pollfd, 2> entries{pollfd{wake_.readEnd.get(), POLLIN, 0},
                                      pollfd{reading_ ? inputFd_ : -1, POLLIN, 0}};
        if (::poll(entries.data(), entries.size(), millisecondsToNextDue()) < 0) continue;  // EINTR
        runDue();
        if (entries[0].revents != 0) runPosted();
        if (entries[1].revents != 0 && reading_) readInput(handlers);
    }
}

void ConsoleLoop::runPosted() {
    // post() writes one byte for all waiting tasks. Tasks that are posted before the swap run as well.
    char byte = 0;
    while (::read(wake_.readEnd.get(), &byte, 1) < 0 && errno == EINTR) {}
    std::vector<Task> tasks;
    {
        const MutexLock lock(mutex_);
        tasks = std::exchange(posted_, {});
    }
    for (const auto& task : tasks) task();
}

void ConsoleLoop::readInput(const Handlers& handlers) {
    std::array<char, 4096> buffer{};
    const ssize_t count = ::read(inputFd_, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return;
    if (count <= 0) {
        closeInput();
        if (!partial_.empty()) handlers.onLine(std::exchange(partial_, {}));
        handlers.onEndOfInput();
        return;
    }
    for (const char c : std::string_view(buffer.data(), static_cast<std::size_t>(count))) {
        if (c == '\n') {
            if (!std::exchange(skipping_, false)) handlers.onLine(std::exchange(partial_, {}));
        } else if (!skipping_) {
            partial_ += c;
        }
        if (partial_.size() <= longestLine) continue;
        partial_.clear();
        skipping_ = true;
        handlers.onLineTooLong();
    }
}

}  // namespace tarnik
