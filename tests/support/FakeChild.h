#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "core/driver/DriverHost.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeSupervisor.h"
#include "core/process/ChildProcess.h"
#include "core/process/PtyProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// A child without a process. It ends by end(), and unless it ignores them, by a signal or the end of its
// input. If it ignores them, each wait for its end returns at once.
class FakeChild {
public:
    enum class StopBehaviour { exits, ignores };
    using OnWait = std::function<void(Seconds)>;

    FakeChild(SpawnRequest request, ChildProcess::OnExit onExit, StopBehaviour stopBehaviour, OnWait onWait);
    ~FakeChild();
    FakeChild(const FakeChild&) = delete;
    FakeChild& operator=(const FakeChild&) = delete;

    const std::shared_ptr<ChildProcess>& handle() const { return handle_; }
    const SpawnRequest& request() const { return request_; }
    // Returns the signals, and the waits of a stop that the child ignored: "10000 ms, signal 15, 5000 ms".
    std::string stopping() const;

    // Ends the child and reports it. A second call does nothing.
    void end(ExitStatus status);

    // The child's side of its terminal.
    void attachTerminal(UniqueFd farSide) { terminal_ = std::move(farSide); }
    void print(std::string_view text) const;
    std::string typed() const;  // waits for input, with a bound
    // Returns a descriptor that keeps the terminal open after the child's end, as a descendant may.
    UniqueFd holdTerminal() const { return UniqueFd::duplicate(terminal_.get()); }

private:
    void signalled(int number);
    Seconds waited(Seconds timeout);
    void note(const std::string& step) { stopping_ += (stopping_.empty() ? "" : ", ") + step; }

    const SpawnRequest request_;
    const ChildProcess::OnExit onExit_;
    const StopBehaviour stopBehaviour_;
    const OnWait onWait_;
    const std::shared_ptr<ChildProcess> handle_;
    UniqueFd terminal_;
    mutable std::mutex mutex_;
    bool ended_ = false;
    std::string stopping_;
    std::vector<std::thread> threads_;
};

// Replaces Spawner::spawn and PtyProcess::spawn. Owns the children.
class FakeSpawner {
public:
    decltype(NodeSupervisorDeps::spawn) spawn();
    PairingSession::SpawnPty spawnPty();
    decltype(DriverHostDeps::launch) launchDriver();

    std::size_t count() const { return children_.size(); }
    FakeChild& last() { return *children_.back(); }
    FakeChild& at(std::size_t index) { return *children_[index]; }

    FakeChild::StopBehaviour stopBehaviour = FakeChild::StopBehaviour::exits;
    FakeChild::OnWait onWait = [](Seconds) {};  // called at each wait for a child that ignores the stop
    std::optional<SystemError> failure;         // if set, every start fails with it

private:
    FakeChild& add(const SpawnRequest& request, ChildProcess::OnExit onExit);

    std::vector<std::unique_ptr<FakeChild>> children_;
};

}  // namespace tarnik
