#include "core/pairing/PairingSession.h"

#include <algorithm>
#include <csignal>

#include <gtest/gtest.h>
#include <poll.h>

#include "core/process/Spawner.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeChild.h"
#include "tests/support/ManualQueue.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using namespace PairingPhases;
using Reports = std::vector<std::string>;

struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualQueue timers{clock};
    FakeSpawner spawner;
    std::atomic<bool> joined = false;
    std::mutex mutex;
    Reports reports;      // phases and exits, without repetitions
    std::string endText;  // of the first snapshot in the phase ended
    std::thread::id exitThread;
    std::vector<Seconds> waited;
    // Called instead of each wait; it may move the clock. Without it the wait is a real one.
    std::function<void(Seconds timeout)> duringWait;
    std::shared_ptr<PairingSession> session;

    // The session's threads use this fixture until the end is reported.
    ~Fixture() {
        if (!session) return;
        if (spawner.count() > 0) command().end(ExitStatus::exited(0));
        EXPECT_TRUE(eventually([&] { return hasReported("exit") || hasReported("signal"); }));
    }

    void report(const std::string& what) {
        const std::lock_guard lock(mutex);
        if (reports.empty() || reports.back() != what) reports.push_back(what);
    }

    void updated(const PairingSession::Snapshot& snapshot) {
        report(describe(snapshot.phase));
        const std::lock_guard lock(mutex);
        if (std::holds_alternative<Ended>(snapshot.phase) && endText.empty()) endText = snapshot.text;
    }

    void exited(ExitStatus status) {
        exitThread = std::this_thread::get_id();
        report(describe(status));
    }

    // `lock` is locked, which the analysis doesn't know of a parameter.
    bool wait(MutexLock& lock, Condition& changed, Seconds timeout, const std::function<bool()>& done)
        TARNIK_THREAD_ANNOTATION(no_thread_safety_analysis) {
        if (!duringWait) return steadyWait(lock, changed, 20s, done);
        waited.push_back(timeout);
        lock.unlock();
        duringWait(timeout);
        lock.lock();
        return done();
    }

    PairingSession::Setup setup() {
        return {.request = {.executable = "/runtime/node"},
                .spawnPty = spawner.spawnPty(),
                .now = [this] { return clock->now(); },
                .joined = [this] { return joined.load(); },
                .connectedAfter = 15s,
                .callAfter = [this](Seconds delay, auto task) { timers.postAfter(delay, std::move(task)); },
                .onUpdate = std::bind_front(&Fixture::updated, this),
                .onExit = std::bind_front(&Fixture::exited, this),
                .wait = std::bind_front(&Fixture::wait, this)};
    }

    void start() { session = PairingSession::start(setup()).value(); }
    FakeChild& command() { return spawner.last(); }

    bool reaches(const PairingPhase& phase) {
        return eventually([&] { return session->phase() == phase; });
    }

    void startAndPrompt() {
        start();
        command().print("Press Enter to connect it");
        ASSERT_TRUE(reaches(WaitingForYes{}));
    }

    void startAndConfirm() {
        startAndPrompt();
        ASSERT_TRUE(session->confirm());
    }

    bool textEndsWith(const std::string& text) {
        return eventually([&] { return session->snapshot().text.ends_with(text); });
    }

    Reports reported() {
        const std::lock_guard lock(mutex);
        return reports;
    }

    bool hasReported(std::string_view start) {
        return std::ranges::any_of(reported(), [&](const auto& what) { return what.starts_with(start); });
    }
};

TEST(PairingSession, findsThePromptInSeveralChunks) {
    Fixture f;
    f.start();
    for (const char* chunk : {"Hello\r\n\x1b[1mPress \x1b[3", "2mEnter\x1b[0m to conn", "ect i", "t: "}) {
        EXPECT_EQ(f.session->phase(), PairingPhase(Starting{})) << chunk;
        const auto before = f.session->snapshot().text;
        f.command().print(chunk);
        EXPECT_TRUE(eventually([&] { return f.session->snapshot().text != before; }));
    }
    EXPECT_EQ(f.session->phase(), PairingPhase(WaitingForYes{}));
}

TEST(PairingSession, typesEnterOnceAndOnlyAtThePrompt) {
    Fixture f;
    f.start();
    EXPECT_FALSE(f.session->confirm());
    f.command().print("press enter to connect it");
    f.command().print("Press Enter to connect it");
    ASSERT_TRUE(f.reaches(WaitingForYes{}));
    EXPECT_TRUE(f.session->confirm());
    EXPECT_FALSE(f.session->confirm());
    EXPECT_EQ(f.command().typed(), "\n");
}

TEST(PairingSession, isConnectedWhenTheCommandStillRuns) {
    Fixture f;
    f.startAndConfirm();
    f.command().print(" Connecting.");
    EXPECT_TRUE(f.textEndsWith(" Connecting."));
    f.timers.advance(14.9s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connecting{}));
    f.timers.advance(0.1s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connected{}));
    f.command().end(ExitStatus::exited(1));
    ASSERT_TRUE(eventually([&] { return f.hasReported("exit"); }));
    EXPECT_EQ(f.reported(), (Reports{"waitingForYes", "connecting", "connected", "exit 1"}));
    EXPECT_EQ(f.exitThread, std::this_thread::get_id()) << "the thread that reaped the command";
}

TEST(PairingSession, endsWithTheCommandUntilItIsConnected) {
    Fixture f;
    f.startAndConfirm();
    f.joined = true;
    f.command().handle()->markReaped([] { return ExitStatus::exited(0); });
    f.timers.advance(15s);  // the command has ended, but its end is not reported yet
    f.command().end(ExitStatus::exited(0));
    EXPECT_TRUE(f.reaches(Ended{ExitStatus::exited(0)}));
}

TEST(PairingSession, cancelStopsTheCommandAndChecksTheJoinRecord) {
    const PairingPhase connected = Connected{}, ended = Ended{ExitStatus::signaled(SIGTERM)};
    for (const auto& [confirmed, joined] : {std::pair(true, true), {true, false}, {false, true}}) {
        Fixture f;
        f.startAndPrompt();
        if (confirmed) f.session->confirm();
        f.joined = joined;
        f.session->cancel();
        EXPECT_EQ(f.session->phase(), confirmed && joined ? connected : ended) << confirmed << joined;
        EXPECT_EQ(f.command().stopping(), "signal 15");
        EXPECT_FALSE(f.session->confirm());
    }
}

// The command ends half a second before the limit.
TEST(PairingSession, cancelTakesEightSecondsAtMost) {
    Fixture f;
    f.spawner.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.startAndPrompt();
    const UniqueFd held = f.command().holdTerminal();
    f.duringWait = [&](Seconds timeout) {
        if (timeout == 3s) f.clock->set(after(f.clock->now(), 3s));
        if (timeout != 5s) return;
        f.clock->set(after(f.clock->now(), 4.5s));
        f.command().end(ExitStatus::signaled(SIGKILL));  // waits for the last output
    };
    f.session->cancel();
    EXPECT_EQ(f.waited, (std::vector<Seconds>{3s, 5s, 1s, 0.5s}));
    EXPECT_EQ(f.command().stopping(), "signal 15, signal 9");
    EXPECT_EQ(f.reported(), (Reports{"waitingForYes", "ended (signal 9)", "signal 9"}));
}

TEST(PairingSession, waitsASecondForTheLastOutputAndThenClosesTheTerminal) {
    std::signal(SIGPIPE, SIG_IGN);
    Fixture f;
    f.startAndPrompt();
    const UniqueFd held = f.command().holdTerminal();
    pollfd hungUp{.fd = held.get(), .events = 0, .revents = 0};
    f.duringWait = [&](Seconds) {
        EXPECT_EQ(::write(held.get(), "Gone.", 5), 5);
        EXPECT_TRUE(f.textEndsWith("Gone."));
        EXPECT_EQ(f.session->phase(), PairingPhase(WaitingForYes{}));
    };
    f.command().end(ExitStatus::exited(1));
    EXPECT_EQ(f.waited, std::vector<Seconds>{1s});
    // The thread that reports the last output may also report the end.
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(f.mutex);
        return f.endText.ends_with("Gone.");
    }));
    // The terminal no longer costs a thread and a descriptor, although it is still held open.
    EXPECT_TRUE(eventually([&] { return ::poll(&hungUp, 1, 0) == 1; }));
}

TEST(PairingSession, endsForAnExitBeforeTheStartReturns) {
    Fixture f;
    auto setup = f.setup();
    std::atomic<bool> isDraining = false, isDrained = false;
    UniqueFd held;
    f.duringWait = [&](Seconds) {
        isDraining = true;
        EXPECT_TRUE(eventually([&] { return isDrained.load(); }));
    };
    setup.spawnPty = [&, inner = f.spawner.spawnPty()](const auto& request, auto onExit) {
        auto pty = inner(request, [onExit](ExitStatus status) { std::thread(onExit, status).detach(); });
        held = f.command().holdTerminal();
        f.command().end(ExitStatus::exited(127));
        EXPECT_TRUE(eventually([&] { return isDraining.load(); }));
        return pty;
    };
    f.session = PairingSession::start(std::move(setup)).value();
    EXPECT_EQ(f.session->phase(), PairingPhase(Starting{})) << "the output has not ended yet";
    EXPECT_EQ(::write(held.get(), "No runtime.", 11), 11);
    EXPECT_TRUE(f.textEndsWith("No runtime."));
    isDrained = true;
    EXPECT_TRUE(f.reaches(Ended{ExitStatus::exited(127)}));
}

// The command is started and killed again, as it happens when descriptors run out.
TEST(PairingSession, reportsNothingOfAStartThatFailed) {
    Fixture f;
    auto setup = f.setup();
    setup.spawnPty = [&f, inner = f.spawner.spawnPty()](const auto& request, auto onExit) {
        auto pty = inner(request, std::move(onExit));
        f.command().end(ExitStatus::signaled(SIGKILL));
        pty = std::unexpected(SystemError{"forkpty", EMFILE});
        return pty;
    };
    f.duringWait = [](Seconds) {};
    EXPECT_FALSE(PairingSession::start(std::move(setup)));
    EXPECT_EQ(f.reported(), Reports());
}

// Changes during an update are reported after it, also the command's end.
TEST(PairingSession, canBeConfirmedFromInsideAnUpdate) {
    Fixture f;
    auto setup = f.setup();
    std::atomic<PairingSession*> listening = nullptr;
    setup.onUpdate = [&, report = setup.onUpdate](const PairingSession::Snapshot& snapshot) {
        report(snapshot);
        if (snapshot.phase != PairingPhase(WaitingForYes{})) return;
        EXPECT_TRUE(eventually([&] { return listening.load() != nullptr; }));
        EXPECT_TRUE(listening.load()->confirm());
        f.duringWait = [](Seconds) {};
        f.command().end(ExitStatus::exited(1));
        EXPECT_EQ(f.reported(), Reports{"waitingForYes"});
    };
    f.session = PairingSession::start(std::move(setup)).value();
    listening = f.session.get();
    f.command().print("Press Enter to connect it");
    ASSERT_TRUE(eventually([&] { return f.hasReported("exit"); }));
    EXPECT_EQ(f.reported(), (Reports{"waitingForYes", "connecting", "ended (exit 1)", "exit 1"}));
}

TEST(PairingSession, showsTheLastOutputOfARealCommand) {
    Fixture f;
    auto setup = f.setup();
    const char* script = "seq 1 20000; echo The link has expired.; exit 1";
    setup.request = {"/bin/sh", {"-c", script}, {{"PATH", Spawner::defaultPath}}};
    setup.spawnPty = PtyProcess::spawn;
    f.session = PairingSession::start(std::move(setup)).value();
    EXPECT_TRUE(eventually([&] { return f.hasReported("exit 1"); }));
    EXPECT_TRUE(f.endText.ends_with("The link has expired.\n"));
}

}  // namespace
}  // namespace tarnik
