#include "core/node/NodeSupervisor.h"

#include <csignal>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Eventually.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using namespace NodeStates;

const std::string endpointKey(CuaDriverEndpoint::environmentKey);
const CuaDriverEndpoint endpointA{"/tmp/a.sock", "/opt/driver"};
const CuaDriverEndpoint endpointB{"/tmp/b.sock", "/opt/driver"};
const NodeState running = Running{}, stopped = Stopped{}, pairing = NodeStates::Pairing{};

NodeState restarting(Seconds delay) {
    return Restarting{delay};
}

struct Fixture {
    TemporaryFolder folder;
    NodeHome home = NodeHome::resolve(folder.path() + "/node", "/Users/me").value();
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<ManualQueue> queue = std::make_shared<ManualQueue>(clock);
    FakeSpawner spawner;
    std::vector<std::string> messages;
    std::vector<NodeState> states;
    NodeSupervisorDeps deps;
    std::optional<NodeSupervisor> made;

    Fixture() {
        deps.spawn = spawner.spawn();
        deps.spawnPty = spawner.spawnPty();
        deps.now = [this] { return clock->now(); };
        deps.makeQueue = [this](const std::string&) { return queue; };
    }

    void write(const std::string& path) const {
        ::chmod(folder.write(path.substr(folder.path().size()), "").c_str(), 0700);
    }
    void install() const {
        write(home.nodeBinary());
        write(home.entry());
    }
    void join() const { write(home.joinRecord()); }

    NodeSupervisor& supervisor() {
        const auto log = [this](const std::string& text) { messages.push_back(text); };
        const auto report = [this](const NodeState& state) { states.push_back(state); };
        if (!made)
            made.emplace(home, Environment{{"PATH", "/bin"}, {"HOME", "/Users/me"}}, deps, log, report);
        return *made;
    }
    void startJoined() {
        install();
        join();
        supervisor().start();
    }
    NodeState started() {
        supervisor().start();
        return states.back();
    }
    NodeState after(Seconds time) {
        queue->advance(time);
        return states.back();
    }
    NodeState afterExit(ExitStatus status = ExitStatus::exited(1)) {
        spawner.last().end(status);
        return states.back();
    }
    std::size_t startsAfter(Seconds time) {
        queue->advance(time);
        return spawner.count();
    }
    std::size_t startsWith(const std::optional<CuaDriverEndpoint>& endpoint) {
        supervisor().setEndpoint(endpoint);
        return spawner.count();
    }
    const Environment& environment() { return spawner.last().request().environment; }
    std::shared_ptr<PairingSession> pair() {
        return supervisor().beginPairing("https://join.example", {}).value();
    }
    PairingError refusal() { return supervisor().beginPairing("https://other.example", {}).error(); }
    void prompt(const std::shared_ptr<PairingSession>& session) {
        spawner.last().print("Press Enter to connect it");
        const PairingPhase waiting = PairingPhases::WaitingForYes{};
        ASSERT_TRUE(eventually([&] { return session->phase() == waiting; }));
    }
};

TEST(NodeSupervisor, reportsOnceWhatIsMissing) {
    Fixture f;
    EXPECT_EQ(f.started(), NodeState(NotInstalled{}));
    f.install();
    for (int i = 0; i < 2; ++i) EXPECT_EQ(f.started(), NodeState(WaitingForLink{}));
    EXPECT_EQ(f.states.size(), 2U);
    EXPECT_EQ(f.spawner.count(), 0U);
    f.join();
    EXPECT_EQ(f.started(), running);
    EXPECT_EQ(f.supervisor().runningPID(), f.spawner.last().handle()->pid());
}

TEST(NodeSupervisor, stopsTheNodeByClosingItsInput) {
    Fixture f;
    f.deps.nodeLog = NodeLog::make(f.folder.path() + "/log");
    f.startJoined();
    const auto& request = f.spawner.last().request();
    EXPECT_TRUE(request.standardInput.descriptor() && request.standardOutput.descriptor());
    EXPECT_EQ(request.standardOutput, request.standardError);
    f.supervisor().stop();
    EXPECT_EQ(f.states.back(), stopped);
    EXPECT_EQ(f.spawner.last().handle()->exitStatus(), ExitStatus::exited(0));
    EXPECT_EQ(f.spawner.last().stopping(), "");
    EXPECT_TRUE(f.messages.empty());
}

TEST(NodeSupervisor, closesAnOutputThatOutlivesTheNode) {
    std::signal(SIGPIPE, SIG_IGN);
    Fixture f;
    UniqueFd leftBehind;
    f.deps.nodeLog = NodeLog::make(f.folder.path() + "/log");
    f.deps.outputGrace = 0.05s;
    f.deps.spawn = [&leftBehind, spawn = f.deps.spawn](const SpawnRequest& request, auto onExit) {
        leftBehind = UniqueFd::duplicate(*request.standardOutput.descriptor());
        return spawn(request, onExit);
    };
    f.startJoined();
    EXPECT_EQ(::write(leftBehind.get(), "x", 1), 1);
    f.spawner.last().end(ExitStatus::exited(1));
    EXPECT_TRUE(eventually([&] { return ::write(leftBehind.get(), "x", 1) < 0; }));
}

TEST(NodeSupervisor, waitsLongerAfterEachQuickExit) {
    Fixture f;
    f.startJoined();
    for (const Seconds delay : {1s, 2s, 4s, 8s, 16s, 30s, 60s, 60s}) {
        f.queue->advance(59.9s);
        EXPECT_EQ(f.afterExit(), restarting(delay));
        EXPECT_EQ(f.after(delay - 1ms), restarting(delay));
        EXPECT_EQ(f.after(1ms), running);
    }
    EXPECT_EQ(f.spawner.last().request().standardOutput, Stdio::null());  // without a log
    f.queue->advance(60s);
    EXPECT_EQ(f.afterExit(ExitStatus::signaled(SIGKILL)), restarting(1s));
    EXPECT_EQ(f.messages.back(), "the node stopped (signal 9)");
    EXPECT_EQ(f.spawner.count(), 9U);
}

TEST(NodeSupervisor, retriesAFailedStart) {
    Fixture f;
    f.spawner.failure = SystemError{"posix_spawn /node", ENOENT};
    f.startJoined();
    EXPECT_EQ(f.messages.at(0), "couldn't start the node: " + describe(*f.spawner.failure));
    for (int i = 0; i < 3; ++i) f.supervisor().start();
    EXPECT_EQ(f.after(1s), restarting(2s));
    EXPECT_EQ(f.messages.size(), 5U) << "only one restart was pending";
    f.spawner.failure.reset();
    EXPECT_EQ(f.after(2s), running);

    // A connect command that can't be started brings the node back.
    f.spawner.failure = SystemError{"forkpty", EAGAIN};
    EXPECT_EQ(f.refusal(), PairingError(*f.spawner.failure));
    EXPECT_EQ(f.states.back(), restarting(4s));
    f.spawner.failure.reset();
    EXPECT_EQ(f.after(4s), running);
}

TEST(NodeSupervisor, stopCancelsAPendingRestart) {
    Fixture f;
    f.startJoined();
    f.spawner.last().end(ExitStatus::exited(1));
    f.supervisor().stop();
    EXPECT_EQ(f.after(1h), stopped);
    EXPECT_EQ(f.startsWith(endpointA), 1U);
    EXPECT_EQ(f.started(), running);
    EXPECT_EQ(f.afterExit(), restarting(1s)) << "the backoff was reset";
}

TEST(NodeSupervisor, stopsANodeByForceAndIgnoresItsLateExit) {
    Fixture f;
    f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.startJoined();
    EXPECT_EQ(f.startsWith(endpointA), 2U);
    EXPECT_EQ(f.spawner.at(0).stopping(), "10000 ms, signal 15, 5000 ms, signal 9, 5000 ms");
    f.spawner.at(0).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states, std::vector{running});
    f.made.reset();
    EXPECT_EQ(f.afterExit(ExitStatus::signaled(SIGKILL)), stopped);
    EXPECT_TRUE(f.messages.empty());
}

// The program's end begins while a call stops the node. That call starts nothing, so stop() has nothing to
// stop.
TEST(NodeSupervisor, startsNothingOnceTheProgramEnds) {
    for (const bool pairs : {false, true}) {
        Fixture f;
        bool ending = false;
        f.deps.isEnding = [&] { return ending; };
        f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
        f.spawner.onWait = [&](Seconds) { ending = true; };
        f.startJoined();
        if (!pairs) f.supervisor().setEndpoint(endpointA);
        EXPECT_FALSE(pairs && f.supervisor().beginPairing("https://join.example", {}));
        f.supervisor().start();
        f.supervisor().stop();
        EXPECT_EQ(f.spawner.count(), 1U);
        EXPECT_EQ(f.states.back(), stopped);
    }
}

TEST(NodeSupervisor, restartsOnlyForAnotherEndpoint) {
    Fixture f;
    f.supervisor().setEndpoint(endpointA);
    f.startJoined();
    EXPECT_EQ(f.startsWith(endpointA), 1U);
    f.spawner.last().end(ExitStatus::exited(1));
    f.queue->advance(1s);
    EXPECT_EQ(f.startsWith(endpointB), 3U);
    EXPECT_EQ(f.environment().at(endpointKey), endpointB.environmentValue());
    EXPECT_EQ(f.afterExit(), restarting(1s)) << "the backoff was reset";
    f.supervisor().setEndpoint(std::nullopt);
    EXPECT_EQ(f.startsAfter(1s), 4U);
    EXPECT_FALSE(f.environment().contains(endpointKey));
}

TEST(NodeSupervisor, refusesToPairWithoutChangingAnything) {
    Fixture f;
    EXPECT_EQ(f.refusal(), PairingError(PairingFailure::notInstalled));
    EXPECT_TRUE(f.states.empty());
    f.install();
    const auto session = f.pair();
    EXPECT_EQ(f.refusal(), PairingError(PairingFailure::busy));
    EXPECT_EQ(f.states, std::vector{pairing});
    EXPECT_EQ(f.spawner.count(), 1U);
    EXPECT_TRUE(session->isInProgress());
}

TEST(NodeSupervisor, waitsForAnotherLinkWhenPairingFails) {
    Fixture f;
    f.install();
    f.pair();
    EXPECT_EQ(f.afterExit(), NodeState(WaitingForLink{}));
    EXPECT_EQ(f.startsAfter(1h), 1U);

    // If this Mac has joined, the node is restarted. The delay grows, however long the pairing ran.
    f.join();
    for (const Seconds delay : {1s, 2s, 4s}) {
        f.pair();
        EXPECT_EQ(f.after(2min), pairing);
        EXPECT_EQ(f.afterExit(), restarting(delay));
    }
}

TEST(NodeSupervisor, replacesAConnectedPairingByANewOne) {
    Fixture f;
    f.startJoined();
    const auto first = f.pair();
    f.prompt(first);
    first->confirm();
    EXPECT_EQ(f.after(15s), running);
    EXPECT_FALSE(f.supervisor().runningPID()) << "a pairing is not the node";
    const auto second = f.pair();
    EXPECT_EQ(f.spawner.at(1).stopping(), "signal 15");
    EXPECT_EQ(f.states.back(), pairing);
    f.prompt(second);
    second->confirm();
    f.supervisor().stop();
    EXPECT_TRUE(eventually([&] { return second->phase() == PairingPhase(PairingPhases::Connected{}); }))
        << "this Mac has joined";
}

TEST(NodeSupervisor, restartsForANewEndpointOnceAPairingHasSettled) {
    Fixture f;
    f.startJoined();
    const auto session = f.pair();
    f.prompt(session);
    f.supervisor().setEndpoint(endpointA);
    EXPECT_EQ(f.startsAfter(10min), 2U);
    session->confirm();
    EXPECT_EQ(f.startsAfter(89s), 2U);
    EXPECT_EQ(f.startsAfter(1s), 3U);
    EXPECT_EQ(f.states.back(), running);
    EXPECT_TRUE(f.environment().contains(endpointKey));

    // A pairing that ends first cancels the check.
    f.prompt(f.pair());
    f.supervisor().setEndpoint(endpointB);
    f.spawner.last().end(ExitStatus::exited(1));
    EXPECT_EQ(f.startsAfter(1s), 5U);
    EXPECT_EQ(f.startsAfter(1h), 5U);
}

}  // namespace
}  // namespace tarnik
