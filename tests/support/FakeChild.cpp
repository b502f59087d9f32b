#include "tests/support/FakeChild.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace tarnik {

FakeChild::FakeChild(SpawnRequest request, ChildProcess::OnExit onExit, StopBehaviour stopBehaviour,
                     OnWait onWait)
    : request_(std::move(request)),
      onExit_(std::move(onExit)),
      stopBehaviour_(stopBehaviour),
      onWait_(std::move(onWait)),
      handle_(std::make_shared<ChildProcess>(
          1 << 29, [this](pid_t, int number) { signalled(number); },
          [this](Seconds timeout) { return waited(timeout); })) {
    const auto input = request_.standardInput.descriptor();
    if (!input || stopBehaviour_ == StopBehaviour::ignores) return;
    threads_.emplace_back([this, fd = UniqueFd::duplicate(*input)] {
        for (char byte = 0; ::read(fd.get(), &byte, 1) > 0;) {}
        end(ExitStatus::exited(0));
    });
}

FakeChild::~FakeChild() {
    for (auto& thread : threads_) thread.join();
}

std::string FakeChild::stopping() const {
    const std::lock_guard lock(mutex_);
    return stopping_;
}

void FakeChild::end(ExitStatus status) {
    {
        const std::lock_guard lock(mutex_);
        if (std::exchange(ended_, true)) return;
    }
    terminal_.reset();
    handle_->markReaped([status] { return status; });
    if (onExit_) onExit_(status);
}

void FakeChild::print(std::string_view text) const {
    ASSERT_EQ(::write(terminal_.get(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
}

std::string FakeChild::typed() const {
    pollfd entry{terminal_.get(), POLLIN, 0};
    if (::poll(&entry, 1, 5000) != 1) return "(nothing was typed)";
    std::array<char, 256> buffer{};
    const ssize_t count = ::read(terminal_.get(), buffer.data(), buffer.size());
    return count > 0 ? std::string(buffer.data(), static_cast<std::size_t>(count)) : std::string();
}

// Called under the handle's lock, so another thread reports the end, as for a real child.
void FakeChild::signalled(int number) {
    const std::lock_guard lock(mutex_);
    note("signal " + std::to_string(number));
    if (stopBehaviour_ == StopBehaviour::exits)
        threads_.emplace_back([this, number] { end(ExitStatus::signaled(number)); });
}

Seconds FakeChild::waited(Seconds timeout) {
    if (stopBehaviour_ == StopBehaviour::exits) return timeout;
    {
        const std::lock_guard lock(mutex_);
        if (ended_) return timeout;
        note(std::to_string(std::lround(1000 * timeout.count())) + " ms");
    }
    onWait_(timeout);
    return Seconds::zero();
}

FakeChild& FakeSpawner::add(const SpawnRequest& request, ChildProcess::OnExit onExit) {
    children_.push_back(std::make_unique<FakeChild>(request, std::move(onExit), stopBehaviour, onWait));
    return *children_.back();
}

decltype(NodeSupervisorDeps::spawn) FakeSpawner::spawn() {
    using Started = std::expected<std::shared_ptr<ChildProcess>, SystemError>;
    return [this](const SpawnRequest& request, ChildProcess::OnExit onExit) -> Started {
        if (failure) return std::unexpected(*failure);
        return add(request, std::move(onExit)).handle();
    };
}

decltype(DriverHostDeps::launch) FakeSpawner::launchDriver() {
    return [this](const DriverLaunch& launch, int livenessFd, ChildProcess::OnExit onExit) {
        const auto input = Stdio::fd(livenessFd);
        return spawn()({launch.executable, launch.arguments, launch.environment, input}, std::move(onExit));
    };
}

PairingSession::SpawnPty FakeSpawner::spawnPty() {
    using Started = std::expected<std::shared_ptr<PtyProcess>, SystemError>;
    return [this](const SpawnRequest& request, ChildProcess::OnExit onExit) -> Started {
        if (failure) return std::unexpected(*failure);
        int ends[2] = {-1, -1};
        EXPECT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
        UniqueFd master(ends[0]);
        auto& child = add(request, std::move(onExit));
        child.attachTerminal(UniqueFd(ends[1]));
        return std::make_shared<PtyProcess>(child.handle(), std::move(master));
    };
}

}  // namespace tarnik
