#include "core/node/NodeSupervisor.h"

#include <csignal>
#include <map>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/support/Eventually.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using namespace NodeStates;

const std::string endpointKey(CuaDriverEndpoint::environmentKey);
const CuaDriverEndpoint endpointA{"/tmp/a.sock", "/opt/driver"};
const CuaDriverEndpoint endpointB{"/tmp/b.sock", "/opt/driver"};
const NodeState running = Running{}, stopped = Stopped{};

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
    std::shared_ptr<PairingSession> session;

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
        if (!made) made.emplace(home, Environment{{"PATH", "/bin"}, {"HOME", "/h"}}, deps, log, report);
        return *made;
    }
    void startJoined() {
        install();
        join();
        supervisor().start();
    }
    const Environment& environment() { return spawner.last().request().environment; }
    PairingError refusal() { return supervisor().beginPairing("https://other.example", {}).error(); }
    void pair() {
        const auto begun = supervisor().beginPairing("https://join.example", {});
        if (!begun) return;
        session = *begun;
        spawner.last().print("Press Enter to connect it");
        const PairingPhase waiting = PairingPhases::WaitingForYes{};
        ASSERT_TRUE(eventually([&] { return session->phase() == waiting; }));
    }
    void act(const std::string& event) {
        static const std::map<std::string, void (*)(Fixture&)> actions{
            {"install", [](auto& f) { f.install(); }},
            {"join", [](auto& f) { f.join(); }},
            {"start", [](auto& f) { f.supervisor().start(); }},
            {"stop", [](auto& f) { f.supervisor().stop(); }},
            {"A", [](auto& f) { f.supervisor().setEndpoint(endpointA); }},
            {"B", [](auto& f) { f.supervisor().setEndpoint(endpointB); }},
            {"fail", [](auto& f) { f.spawner.failure = SystemError{"spawn", EAGAIN}; }},
            {"heal", [](auto& f) { f.spawner.failure.reset(); }},
            {"exit", [](auto& f) { f.spawner.last().end(ExitStatus::exited(1)); }},
            {"pair", [](auto& f) { f.pair(); }},
            {"confirm", [](auto& f) { f.session->confirm(); }},
        };
        if (event.starts_with('+')) return queue->advance(Seconds(std::stod(event)));
        actions.at(event)(*this);
    }
    std::string reported() const {
        std::string text;
        for (const auto& state : states) {
            const std::string name = describe(state);
            text += (name.starts_with("restarting ") ? name.substr(11) : name) + " ";
        }
        return text;
    }
};

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

TEST(NodeSupervisor, stopsANodeByForceAndIgnoresItsLateExit) {
    Fixture f;
    f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.startJoined();
    f.act("A");
    ASSERT_EQ(f.spawner.count(), 2U);
    EXPECT_EQ(f.spawner.at(0).stopping(), "10000 ms, signal 15, 5000 ms, signal 9, 5000 ms");
    f.spawner.at(0).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states, std::vector{running});
    f.made.reset();
    f.spawner.at(1).end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.states.back(), stopped);
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

// The events are calls, the end of the latest child, and the passing of seconds. The states are those
// reported: only its delay for a restart.
TEST(NodeSupervisor, reportsEachStateOnce) {
    const std::string up = "install join start ";
    const std::tuple<const char*, std::string, std::string, std::size_t> cases[] = {
        {"parts are missing", "start start install start join start", "notInstalled waitingForLink running ",
         1},
        {"it ends at once", up + "exit +0.999", "running 1s ", 1},
        {"it ends often", up + "exit +1 +59.9 exit +2 exit +4 exit +8 exit +16 exit +30 exit +60 exit +60",
         "running 1s running 2s running 4s running 8s running 16s running 30s running 60s running 60s "
         "running ",
         9},
        {"it ran for a minute", up + "exit +1 +60 exit", "running 1s running 1s ", 2},
        {"it can't be started; one restart is pending", "fail " + up + "start start +1 +1.9", "1s 2s ", 0},
        {"it can be started again", "fail " + up + "heal +1", "1s running ", 1},
        {"a stop cancels a restart", up + "exit stop +3600 A", "running 1s stopped ", 1},
        {"a stop resets the delay", up + "exit stop start exit", "running 1s stopped running 1s ", 2},
        {"the same endpoint", "A " + up + "A", "running ", 1},
        {"another endpoint", "A " + up + "B", "running ", 2},
        {"an endpoint resets the delay", up + "exit +1 A exit", "running 1s running 1s ", 3},
        {"no node to pair with", "pair", "", 0},
        {"a second pairing", "install pair pair", "pairing ", 1},
        {"a pairing that can't be started", up + "fail pair heal +1", "running 1s running ", 2},
        {"a pairing cancels a restart", up + "exit pair +10", "running 1s pairing ", 2},
        {"a pairing that fails", "install pair exit +3600", "pairing waitingForLink ", 1},
        {"pairings that fail", up + "pair +120 exit pair +120 exit", "running pairing 1s pairing 2s ", 3},
        {"a pairing that is connected", up + "pair confirm +15", "running pairing running ", 2},
        {"a pairing after it", up + "pair confirm +15 pair", "running pairing running pairing ", 3},
        {"an endpoint during a pairing", up + "pair A confirm +89", "running pairing running ", 2},
        {"once it has settled", up + "pair A confirm +90", "running pairing running ", 3},
        {"a pairing that ends first", up + "pair A exit +1 +3600", "running pairing 1s running ", 3},
    };
    for (const auto& [why, events, states, starts] : cases) {
        Fixture f;
        for (const auto& event : words(events)) f.act(event);
        EXPECT_EQ(f.reported(), states) << why;
        EXPECT_EQ(f.spawner.count(), starts) << why;
    }
}

TEST(NodeSupervisor, passesTheEndpointToTheNode) {
    Fixture f;
    for (const char* event : {"install", "join", "A", "start"}) f.act(event);
    EXPECT_EQ(f.environment().at(endpointKey), endpointA.environmentValue());
    EXPECT_EQ(f.supervisor().runningPID(), f.spawner.last().handle()->pid());
    EXPECT_EQ(f.spawner.last().request().standardOutput, Stdio::null());  // without a log
    f.supervisor().setEndpoint(std::nullopt);
    EXPECT_FALSE(f.environment().contains(endpointKey));
}

TEST(NodeSupervisor, reportsWhyNothingRuns) {
    Fixture f;
    EXPECT_EQ(f.refusal(), PairingError(PairingFailure::notInstalled));
    f.spawner.failure = SystemError{"posix_spawn /node", ENOENT};
    f.startJoined();
    EXPECT_EQ(f.messages.back(), "couldn't start the node: " + describe(*f.spawner.failure));
    EXPECT_EQ(f.refusal(), PairingError(*f.spawner.failure));
    f.act("heal");
    f.queue->advance(2s);
    f.spawner.last().end(ExitStatus::signaled(SIGKILL));
    EXPECT_EQ(f.messages.back(), "the node stopped (signal 9)");
    f.act("pair");
    EXPECT_EQ(f.refusal(), PairingError(PairingFailure::busy));
    EXPECT_FALSE(f.supervisor().runningPID()) << "a pairing is not the node";
}

TEST(NodeSupervisor, endsAConnectedPairing) {
    Fixture f;
    for (const char* event : {"install", "join", "pair", "confirm", "+15", "pair", "confirm"}) f.act(event);
    EXPECT_EQ(f.spawner.at(0).stopping(), "signal 15");
    f.supervisor().stop();
    EXPECT_TRUE(eventually([&] { return f.session->phase() == PairingPhase(PairingPhases::Connected{}); }))
        << "this Mac has joined";
}

}  // namespace
}  // namespace tarnik
