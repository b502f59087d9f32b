#include "core/node/NodeSupervisor.h"

#include <csignal>
#include <filesystem>
#include <fstream>

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
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream(path).flush();
        ::chmod(path.c_str(), 0700);
    }
    void install() const {
        write(home.nodeBinary());
        write(home.entry());
    }
    void join() const { write(home.joinRecord()); }

    NodeSupervisor& supervisor() {
        if (!made) {
            made.emplace(
                home, Environment{{"PATH", "/bin"}, {"HOME", "/Users/me"}}, deps,
                [this](const std::string& text) { messages.push_back(text); },
                [this](const NodeState& state) { states.push_back(state); });
        }
        return *made;
    }
    void startJoined() {
        install();
        join();
        supervisor().start();
    }
    std::shared_ptr<PairingSession> pair(const std::string& link = "https://join.example") {
        return supervisor().beginPairing(link, {}).value();
    }
    void prompt(const std::shared_ptr<PairingSession>& session) {
        spawner.last().print("Press Enter to connect it");
        ASSERT_TRUE(
            eventually([&] { return session->phase() == PairingPhase(PairingPhases::WaitingForYes{}); }));
    }
};

TEST(NodeSupervisor, reportsOnceWhatIsMissing) {
    Fixture f;
    f.supervisor().start();
    f.supervisor().start();
    EXPECT_EQ(f.states, std::vector<NodeState>{NotInstalled{}});
    f.install();
    f.supervisor().start();
    EXPECT_EQ(f.states.back(), NodeState(WaitingForLink{}));
    EXPECT_EQ(f.spawner.count(), 0U);
    f.join();
    f.supervisor().start();
    EXPECT_EQ(f.states.back(), NodeState(Running{}));
    EXPECT_EQ(f.supervisor().runningPID(), f.spawner.last().handle()->pid());
}

TEST(NodeSupervisor, stopsTheNodeByClosingItsInput) {
    Fixture f;
    f.deps.nodeLog = NodeLog::make(f.folder.path() + "/log");
    f.startJoined();
    const auto& request = f.spawner.last().request();
    EXPECT_TRUE(request.standardInput.descriptor());
    EXPECT_TRUE(request.standardOutput.descriptor());
    EXPECT_EQ(request.standardOutput, request.standardError);
    f.supervisor().stop();
    EXPECT_EQ(f.states.back(), NodeState(Stopped{}));
    EXPECT_EQ(f.spawner.last().handle()->exitStatus(), ExitStatus::exited(0));
    EXPECT_TRUE(f.spawner.last().signals().empty());
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
        f.spawner.last().end(ExitStatus::exited(1));
        EXPECT_EQ(f.states.back(), NodeState(Restarting{delay}));
        f.queue->advance(delay - 1ms);
        EXPECT_EQ(f.states.back(), NodeState(Restarting{delay}));
        f.queue->advance(1ms);
        EXPECT_EQ(f.states.back(), NodeState(Running{}));
    }
    EXPECT_EQ(f.spawner.last().request().standardOutput, Stdio::null());  // without a log
    f.queue->advance(60s);
    f.spawner.last().end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states.back(), NodeState(Restarting{1s}));
    EXPECT_EQ(f.messages.back(), "the node stopped (signal 9)");
    EXPECT_EQ(f.spawner.count(), 9U);
}

TEST(NodeSupervisor, retriesAFailedStart) {
    Fixture f;
    f.spawner.failure = SystemError{"posix_spawn /node", ENOENT};
    f.startJoined();
    EXPECT_EQ(f.messages.at(0), "couldn't start the node: " + describe(*f.spawner.failure));
    for (int i = 0; i < 3; ++i) f.supervisor().start();
    f.queue->advance(1s);
    EXPECT_EQ(f.messages.size(), 5U) << "only one restart was pending";
    EXPECT_EQ(f.states, (std::vector<NodeState>{Restarting{1s}, Restarting{2s}}));
    f.spawner.failure.reset();
    f.queue->advance(2s);
    EXPECT_EQ(f.states.back(), NodeState(Running{}));

    // A connect command that can't be started brings the node back.
    f.spawner.failure = SystemError{"forkpty", EAGAIN};
    EXPECT_FALSE(f.supervisor().beginPairing("https://join.example", {}));
    EXPECT_EQ(f.states.back(), NodeState(Restarting{4s}));
    f.spawner.failure.reset();
    f.queue->advance(4s);
    EXPECT_EQ(f.states.back(), NodeState(Running{}));
}

TEST(NodeSupervisor, stopCancelsAPendingRestart) {
    Fixture f;
    f.startJoined();
    f.spawner.last().end(ExitStatus::exited(1));
    f.supervisor().stop();
    f.queue->advance(1h);
    f.supervisor().setEndpoint(endpointA);
    EXPECT_EQ(f.spawner.count(), 1U);
    EXPECT_EQ(f.states.back(), NodeState(Stopped{}));
    f.supervisor().start();
    f.spawner.last().end(ExitStatus::exited(1));
    EXPECT_EQ(f.states.back(), NodeState(Restarting{1s}));  // the backoff was reset
}

TEST(NodeSupervisor, stopsANodeByForceAndIgnoresItsLateExit) {
    Fixture f;
    f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.startJoined();
    f.supervisor().setEndpoint(endpointA);
    EXPECT_EQ(f.spawner.at(0).stopping(), "10000 ms, signal 15, 5000 ms, signal 9, 5000 ms");
    ASSERT_EQ(f.spawner.count(), 2U);
    f.spawner.at(0).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states, std::vector<NodeState>{Running{}});
    f.made.reset();
    f.spawner.at(1).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states.back(), NodeState(Stopped{}));
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
        if (pairs) {
            EXPECT_FALSE(f.supervisor().beginPairing("https://join.example", {}));
        } else {
            f.supervisor().setEndpoint(endpointA);
        }
        f.supervisor().start();
        f.supervisor().stop();
        EXPECT_EQ(f.spawner.count(), 1U);
        EXPECT_EQ(f.states.back(), NodeState(Stopped{}));
    }
}

TEST(NodeSupervisor, restartsOnlyForAnotherEndpoint) {
    Fixture f;
    f.supervisor().setEndpoint(endpointA);
    f.startJoined();
    f.spawner.last().end(ExitStatus::exited(1));
    f.queue->advance(1s);
    f.supervisor().setEndpoint(endpointA);
    EXPECT_EQ(f.spawner.count(), 2U);
    f.supervisor().setEndpoint(endpointB);
    EXPECT_EQ(f.spawner.count(), 3U);
    EXPECT_EQ(f.spawner.last().request().environment.at(endpointKey), endpointB.environmentValue());
    f.spawner.last().end(ExitStatus::exited(1));
    EXPECT_EQ(f.states.back(), NodeState(Restarting{1s}));  // the backoff was reset
    f.supervisor().setEndpoint(std::nullopt);
    f.queue->advance(1s);
    EXPECT_FALSE(f.spawner.last().request().environment.contains(endpointKey));
}

TEST(NodeSupervisor, refusesToPairWithoutChangingAnything) {
    Fixture f;
    const auto missing = f.supervisor().beginPairing("https://join.example", {});
    EXPECT_EQ(missing.error(), PairingError(PairingFailure::notInstalled));
    EXPECT_TRUE(f.states.empty());
    f.install();
    const auto session = f.pair();
    EXPECT_EQ(f.states, std::vector<NodeState>{NodeStates::Pairing{}});
    const auto busy = f.supervisor().beginPairing("https://other.example", {});
    EXPECT_EQ(busy.error(), PairingError(PairingFailure::busy));
    EXPECT_EQ(f.spawner.count(), 1U);
    EXPECT_TRUE(session->isInProgress());
}

TEST(NodeSupervisor, waitsForAnotherLinkWhenPairingFails) {
    Fixture f;
    f.install();
    f.pair();
    f.spawner.last().end(ExitStatus::exited(1));
    EXPECT_EQ(f.states, (std::vector<NodeState>{NodeStates::Pairing{}, WaitingForLink{}}));
    f.queue->advance(1h);
    EXPECT_EQ(f.spawner.count(), 1U);

    // If this Mac has joined, the node is restarted. The delay grows, however long the pairing ran.
    f.join();
    for (const Seconds delay : {1s, 2s, 4s}) {
        f.pair();
        f.queue->advance(2min);
        f.spawner.last().end(ExitStatus::exited(1));
        EXPECT_EQ(f.states.back(), NodeState(Restarting{delay}));
    }
}

TEST(NodeSupervisor, replacesAConnectedPairingByANewOne) {
    Fixture f;
    f.startJoined();
    const auto first = f.pair();
    f.prompt(first);
    first->confirm();
    f.queue->advance(15s);
    EXPECT_EQ(f.states.back(), NodeState(Running{}));
    EXPECT_FALSE(f.supervisor().runningPID()) << "a pairing is not the node";
    const auto second = f.pair("https://other.example");
    EXPECT_EQ(f.spawner.at(1).signals(), std::vector{SIGTERM});
    EXPECT_EQ(f.states.back(), NodeState(NodeStates::Pairing{}));
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
    f.queue->advance(10min);
    EXPECT_TRUE(session->isInProgress());
    session->confirm();
    f.queue->advance(89s);
    EXPECT_EQ(f.spawner.count(), 2U);
    f.queue->advance(1s);
    EXPECT_EQ(f.spawner.count(), 3U);
    EXPECT_EQ(f.states.back(), NodeState(Running{}));
    EXPECT_TRUE(f.spawner.last().request().environment.contains(endpointKey));

    // A pairing that ends first cancels the check.
    f.prompt(f.pair());
    f.supervisor().setEndpoint(endpointB);
    f.spawner.last().end(ExitStatus::exited(1));
    f.queue->advance(1s);
    EXPECT_EQ(f.spawner.count(), 5U);
    f.queue->advance(1h);
    EXPECT_EQ(f.spawner.count(), 5U);
}

TEST(NodeState, describesDelaysInSeconds) {
    EXPECT_EQ(describe(NodeState(Restarting{60s})), "restarting 60s");
    EXPECT_EQ(describe(NodeState(Restarting{1.05s})), "restarting 1.05s");
}

}  // namespace
}  // namespace tarnik
