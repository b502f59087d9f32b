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

struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualQueue timers{clock};
    FakeSpawner spawner;
    std::atomic<bool> joined = false;
    std::mutex mutex;
    std::vector<PairingSession::Snapshot> updates;
    std::vector<ExitStatus> exits;
    std::shared_ptr<PairingSession> session;

    // The session's threads tell this fixture of their changes until the command's end was told.
    ~Fixture() {
        if (!session) return;
        session->cancel();
        EXPECT_TRUE(eventually([&] { return !toldExits().empty(); }));
    }

    template <class T>
    void add(const T& told, std::vector<T>& to) {
        const std::lock_guard lock(mutex);
        to.push_back(told);
    }

    PairingSession::Setup setup() {
        return {.request = {.executable = "/runtime/node"},
                .spawnPty = spawner.spawnPty(),
                .now = [this] { return clock->now(); },
                .joined = [this] { return joined.load(); },
                .connectedAfter = 15s,
                .callAfter = [this](Seconds delay, auto task) { timers.postAfter(delay, std::move(task)); },
                .onUpdate = [this](const auto& snapshot) { add(snapshot, updates); },
                .onExit = [this](ExitStatus status) { add(status, exits); }};
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

    std::vector<ExitStatus> toldExits() {
        const std::lock_guard lock(mutex);
        return exits;
    }

    // What the first snapshot showed that told of the end.
    std::string textAtTheEnd() {
        EXPECT_TRUE(eventually([this] { return !toldExits().empty(); }));
        const std::lock_guard lock(mutex);
        for (const auto& update : updates) {
            if (std::holds_alternative<Ended>(update.phase)) return update.text;
        }
        return "(no end was told)";
    }

    std::size_t updateCount() {
        const std::lock_guard lock(mutex);
        return updates.size();
    }

    // Each phase once, in the order in which it was told.
    std::vector<std::string> toldPhases() {
        const std::lock_guard lock(mutex);
        std::vector<std::string> phases;
        for (const auto& update : updates) phases.push_back(describe(update.phase));
        const auto repeated = std::ranges::unique(phases);
        phases.erase(repeated.begin(), repeated.end());
        return phases;
    }
};

TEST(PairingSession, findsThePromptHoweverItArrives) {
    Fixture f;
    f.start();
    std::size_t printed = 0;
    for (const char* chunk : {"Hello\r\n\x1b[1mPress \x1b[3", "2mEnter\x1b[0m to conn", "ect it: "}) {
        EXPECT_EQ(f.session->phase(), PairingPhase(Starting{})) << chunk;
        f.command().print(chunk);
        ++printed;
        EXPECT_TRUE(eventually([&] { return f.updateCount() >= printed; }));
    }
    EXPECT_TRUE(f.reaches(WaitingForYes{}));
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
    EXPECT_TRUE(eventually([&] { return f.session->snapshot().text.ends_with(" Connecting."); }));
    f.timers.advance(14.9s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connecting{}));
    f.timers.advance(0.1s);
    EXPECT_EQ(f.session->phase(), PairingPhase(Connected{}));
    f.command().end(ExitStatus::exited(1));
    EXPECT_EQ(f.session->phase(), PairingPhase(Connected{}));
    EXPECT_EQ(f.toldPhases(), (std::vector<std::string>{"waitingForYes", "connecting", "connected"}));
}

TEST(PairingSession, endsWithTheCommandUntilItIsConnected) {
    Fixture f;
    f.startAndConfirm();
    f.joined = true;
    f.command().handle()->markReaped([] { return ExitStatus::exited(0); });
    f.timers.advance(15s);  // its end is there, and told only now
    f.command().end(ExitStatus::exited(0));
    EXPECT_EQ(f.session->phase(), PairingPhase(Ended{ExitStatus::exited(0)}));
    EXPECT_EQ(f.toldExits(), std::vector{ExitStatus::exited(0)});
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
        EXPECT_TRUE(f.reaches(phase)) << confirmed << joined;
        EXPECT_EQ(f.command().signals(), std::vector{SIGTERM});
        EXPECT_FALSE(f.session->confirm());
    }
}

TEST(PairingSession, keepsTheLastCharactersOfLongOutput) {
    Fixture f;
    f.start();
    const std::string last = "\U0001F469\u200D\U0001F467 end";  // the family is one character
    std::string kept;
    while (kept.size() < 2 * (PairingSession::keptCharacters - 6)) kept += "\u00E9";
    for (int i = 0; i < 2; ++i) f.command().print(kept);
    f.command().print(last + '\xFF');
    EXPECT_TRUE(eventually([&] { return f.session->snapshot().text == kept + last + "\uFFFD"; }));
}

TEST(PairingSession, hearsOfAnExitThatComesBeforeItHasTheHandle) {
    Fixture f;
    auto setup = f.setup();
    // The exit report waits for the handle, so it comes from another thread, as a reaper's does.
    setup.spawnPty = [&f, inner = f.spawner.spawnPty()](const SpawnRequest& request,
                                                        ChildProcess::OnExit onExit) {
        auto pty = inner(request, [onExit = std::move(onExit)](ExitStatus status) {
            std::thread(onExit, status).detach();
        });
        f.command().print("No runtime.");
        f.command().end(ExitStatus::exited(127));
        return pty;
    };
    f.session = PairingSession::start(std::move(setup)).value();
    EXPECT_EQ(f.textAtTheEnd(), "No runtime.");
    EXPECT_EQ(f.session->phase(), PairingPhase(Ended{ExitStatus::exited(127)}));
}

// All that comes while a listener is told of a change waits its turn, the command's end too.
TEST(PairingSession, letsAListenerAnswerFromInsideAnUpdate) {
    Fixture f;
    auto setup = f.setup();
    std::atomic<bool> confirmed = false;
    std::atomic<PairingSession*> listening = nullptr;
    setup.onUpdate = [&, record = setup.onUpdate](const PairingSession::Snapshot& snapshot) {
        record(snapshot);
        if (snapshot.phase != PairingPhase(WaitingForYes{})) return;
        confirmed = listening.load()->confirm();
        f.command().end(ExitStatus::exited(1));
        EXPECT_TRUE(f.toldExits().empty());
    };
    f.session = PairingSession::start(std::move(setup)).value();
    listening = f.session.get();
    f.command().print("Press Enter to connect it");
    ASSERT_TRUE(eventually([&] { return !f.toldExits().empty(); }));
    EXPECT_TRUE(confirmed);
    EXPECT_EQ(f.toldPhases(), (std::vector<std::string>{"waitingForYes", "connecting", "ended (exit 1)"}));
}

TEST(PairingSession, showsWhatARealCommandSaidLast) {
    // A flood and a last word; a descendant keeps the terminal.
    const std::pair<const char*, const char*> cases[] = {
        {"seq 1 20000; echo The link has expired.; exit 1", "The link has expired.\n"},
        {"echo Gone.; trap '' HUP; sleep 3 & exit 1", "Gone.\n"},
    };
    for (const auto& [script, last] : cases) {
        Fixture f;
        auto setup = f.setup();
        setup.request = {.executable = "/bin/sh",
                         .arguments = {"-c", script},
                         .environment = {{"PATH", Spawner::defaultPath}}};
        setup.spawnPty = PtyProcess::spawn;
        f.session = PairingSession::start(std::move(setup)).value();
        EXPECT_TRUE(f.textAtTheEnd().ends_with(last)) << script;
        EXPECT_EQ(f.toldExits(), std::vector{ExitStatus::exited(1)}) << script;
    }
}

}  // namespace
}  // namespace tarnik
