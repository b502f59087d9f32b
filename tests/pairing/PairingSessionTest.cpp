#include "core/pairing/PairingSession.h"

#include <algorithm>
#include <csignal>
#include <tuple>

#include <gtest/gtest.h>

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
    Reports reports;           // phases and exits, each once in a row
    std::string textAtTheEnd;  // of the first snapshot that shows it
    std::vector<Seconds> waited;
    // Runs in place of each wait, and may move the clock. Without it a wait is for what other threads do.
    std::function<void(Seconds timeout)> duringWait;
    std::shared_ptr<PairingSession> session;

    // The session's threads report to this fixture until the command's end.
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
        if (std::holds_alternative<Ended>(snapshot.phase) && textAtTheEnd.empty())
            textAtTheEnd = snapshot.text;
    }

    bool wait(std::unique_lock<std::mutex>& lock, std::condition_variable& changed, Seconds timeout,
              const std::function<bool()>& done) {
        if (!duringWait) return changed.wait_for(lock, 20s, done);
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
                .onUpdate = [this](const auto& snapshot) { updated(snapshot); },
                .onExit = [this](ExitStatus status) { report(describe(status)); },
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

    bool showsAtTheEnd(const std::string& text) {
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

TEST(PairingSession, findsThePromptHoweverItArrives) {
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

TEST(PairingSession, pressesEnterOnceAndOnlyAtThePrompt) {
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

TEST(PairingSession, countsAsConnectedWhenTheCommandRunsOn) {
    Fixture f;
    f.startAndConfirm();
    f.command().print(" Connecting.");
    EXPECT_TRUE(f.showsAtTheEnd(" Connecting."));
    f.timers.advance(14.9s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connecting{}));
    f.timers.advance(0.1s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connected{}));
    f.command().end(ExitStatus::exited(1));
    ASSERT_TRUE(eventually([&] { return f.hasReported("exit"); }));
    EXPECT_EQ(f.reported(), (Reports{"waitingForYes", "connecting", "connected", "exit 1"}));
}

TEST(PairingSession, endsWithTheCommandUntilItIsConnected) {
    Fixture f;
    f.startAndConfirm();
    f.joined = true;
    f.command().handle()->markReaped([] { return ExitStatus::exited(0); });
    f.timers.advance(15s);  // the command has ended, and is reported only now
    f.command().end(ExitStatus::exited(0));
    EXPECT_TRUE(f.reaches(Ended{ExitStatus::exited(0)}));
}

TEST(PairingSession, cancelEndsTheCommandAndAsksWhetherItHadJoined) {
    const PairingPhase ended = Ended{ExitStatus::signaled(SIGTERM)};
    const std::tuple<bool, bool, PairingPhase> cases[] = {
        {true, true, Connected{}}, {true, false, ended}, {false, true, ended}};
    for (const auto& [confirmed, joined, phase] : cases) {
        Fixture f;
        f.startAndPrompt();
        if (confirmed) f.session->confirm();
        f.joined = joined;
        f.session->cancel();
        EXPECT_EQ(f.session->phase(), phase) << confirmed << joined;
        EXPECT_EQ(f.command().signals(), std::vector{SIGTERM});
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
        f.command().end(ExitStatus::signaled(SIGKILL));  // which waits for the last words
    };
    f.session->cancel();
    EXPECT_EQ(f.waited, (std::vector<Seconds>{3s, 5s, 1s, 0.5s}));
    EXPECT_EQ(f.command().signals(), (std::vector{SIGTERM, SIGKILL}));
    EXPECT_EQ(f.reported(), (Reports{"waitingForYes", "ended (signal 9)", "signal 9"}));
}

TEST(PairingSession, waitsASecondForTheLastWords) {
    Fixture f;
    f.startAndPrompt();
    const UniqueFd held = f.command().holdTerminal();
    f.duringWait = [&](Seconds) {
        EXPECT_EQ(::write(held.get(), "Gone.", 5), 5);
        EXPECT_TRUE(f.showsAtTheEnd("Gone."));
        EXPECT_EQ(f.session->phase(), PairingPhase(WaitingForYes{}));
    };
    f.command().end(ExitStatus::exited(1));
    EXPECT_EQ(f.waited, std::vector<Seconds>{1s});
    EXPECT_TRUE(f.textAtTheEnd.ends_with("Gone."));
}

TEST(PairingSession, noticesAnExitThatComesBeforeItHasTheHandle) {
    Fixture f;
    auto setup = f.setup();
    // The exit is reported from another thread, as a reaper's.
    setup.spawnPty = [&f, inner = f.spawner.spawnPty()](const auto& request, auto onExit) {
        auto pty = inner(request, [onExit](ExitStatus status) { std::thread(onExit, status).detach(); });
        f.command().print("No runtime.");
        f.command().end(ExitStatus::exited(127));
        return pty;
    };
    f.session = PairingSession::start(std::move(setup)).value();
    EXPECT_TRUE(f.reaches(Ended{ExitStatus::exited(127)}));
    EXPECT_EQ(f.session->snapshot().text, "No runtime.");
}

// The command was made and killed again, as where descriptors run out.
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

// Everything that happens while a listener hears of a change waits its turn, the command's end too.
TEST(PairingSession, letsAListenerAnswerFromInsideAnUpdate) {
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

TEST(PairingSession, showsWhatARealCommandSaidLast) {
    Fixture f;
    auto setup = f.setup();
    setup.request = {.executable = "/bin/sh",
                     .arguments = {"-c", "seq 1 20000; echo The link has expired.; exit 1"},
                     .environment = {{"PATH", Spawner::defaultPath}}};
    setup.spawnPty = PtyProcess::spawn;
    f.session = PairingSession::start(std::move(setup)).value();
    EXPECT_TRUE(eventually([&] { return f.hasReported("exit 1"); }));
    EXPECT_TRUE(f.textAtTheEnd.ends_with("The link has expired.\n"));
}

}  // namespace
}  // namespace tarnik
