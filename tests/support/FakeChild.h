#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "core/driver/DriverHost.h"
#include "core/foundation/UniqueFd.h"
#include "core/node/NodeSupervisorDeps.h"
#include "core/process/ChildProcess.h"
#include "core/process/PtyProcess.h"
#include "core/process/SpawnRequest.h"

namespace tarnik {

// A child without a process: ends when the test says so, or by itself on the first signal or the end of its
// input. One that ignores both takes no time: each wait for its end is over at once.
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
    std::vector<int> signals() const;
    // What a child that ignores it was stopped with: "10000 ms, signal 15, 5000 ms".
    std::string stopping() const;

    // Returns when the end has been reported. A second end changes nothing.
    void end(ExitStatus status);

    // The far side of its terminal: what the program prints and what is typed at it.
    void attachTerminal(UniqueFd farSide) { terminal_ = std::move(farSide); }
    void print(std::string_view text) const;
    std::string typed() const;  // waits for some, with a bound
    // The terminal as a descendant holds it: open beyond the child's end.
    UniqueFd holdTerminal() const { return UniqueFd::duplicate(terminal_.get()); }

private:
    void signalled(int number);
    Seconds waited(Seconds timeout);
    void note(const std::string& step);

    const SpawnRequest request_;
    const ChildProcess::OnExit onExit_;
    const StopBehaviour stopBehaviour_;
    const OnWait onWait_;
    const std::shared_ptr<ChildProcess> handle_;
    UniqueFd terminal_;
    mutable std::mutex mutex_;
    bool ended_ = false;
    std::vector<int> signals_;
    std::string stopping_;
    std::vector<std::thread> threads_;
};

// Stands for Spawner::spawn and PtyProcess::spawn, and keeps the children.
class FakeSpawner {
public:
    NodeSupervisorDeps::Spawn spawn();
    PairingSession::SpawnPty spawnPty();
    decltype(DriverHostDeps::launch) launchDriver();

    std::size_t count() const { return children_.size(); }
    FakeChild& last() { return *children_.back(); }
    FakeChild& at(std::size_t index) { return *children_[index]; }

    FakeChild::StopBehaviour stopBehaviour = FakeChild::StopBehaviour::exits;
    FakeChild::OnWait onWait = [](Seconds) {};  // called at each wait for a child that ignores
    std::optional<SystemError> failure;         // every start fails with it

private:
    FakeChild& add(const SpawnRequest& request, ChildProcess::OnExit onExit);

    std::vector<std::unique_ptr<FakeChild>> children_;
};

}  // namespace tarnik
