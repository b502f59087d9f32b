#include <algorithm>
#include <source_location>

#include <gtest/gtest.h>

#include "app/JournalFacts.h"
#include "app/journal/ChildRecorder.h"
#include "app/journal/RecordedOperations.h"
#include "app/journal/StateRecorder.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

struct RecordedMachine : FakeMachine {
    std::shared_ptr<Journal> journal = std::make_shared<Journal>(
        folder.path() + "/tarnik.log",
        Journal::Deps{.now = &std::chrono::system_clock::now,
                      .makeQueue = [](auto&) { return std::make_shared<ManualQueue>(); }});
    std::size_t seen = 0;

    RecordedMachine() {
        releaseBase = "https://releases.example";
        deps.supervisor.onEvent = recordHelper(journal, std::nullopt);
        deps.driver.onEvent = recordDriver(journal);
        deps.installer = recorded(journal, std::move(deps.installer));
        model().observe([this](const auto& now, const auto& next) { recordChange(*journal, now, next); });
    }

    void start() {
        model().start();
        settle();
    }
    // Waits until these are the events since the last call.
    void expect(const std::string& names, std::source_location where = std::source_location::current()) {
        std::string found;
        eventually([&] {
            settle();
            found.clear();
            const auto events = journal->events();
            for (std::size_t i = seen; i < events.size(); ++i)
                found += (i > seen ? " " : "") + std::string(nameOf(events[i].code));
            return found == names;
        });
        seen = journal->events().size();
        EXPECT_EQ(found, names) << "line " << where.line();
    }
    JournalEvent last(EventCode code) const {
        auto events = journal->events();
        std::ranges::reverse(events);
        const auto found = std::ranges::find(events, code, &JournalEvent::code);
        return found != events.end() ? *found : JournalEvent();
    }
};

TEST(RecordedEvents, followPairingHelperAndDriver) {
    RecordedMachine m;
    m.install();
    m.start();
    m.expect("helper.waiting");
    m.pairUpToPrompt();
    m.expect("pairing.begun pairing.prompted");
    m.model().pairing().confirm();
    m.pairingIs(PairingPhases::Connecting{});
    m.join();
    m.advance(15s);
    m.expect("pairing.confirmed pairing.connected");
    m.terminals.last().end(ExitStatus::exited(3));
    m.expect("helper.ended helper.restart");
    EXPECT_EQ(m.last(EventCode::helperEnded).number(EventField::exit), 3);
    m.nodes.failure = SystemError{.call = "posix_spawn /node", .code = EACCES};
    m.advance(1s);
    m.expect("helper.startFailed helper.restart");
    EXPECT_EQ(m.last(EventCode::helperRestart).number(EventField::delay), 2000);
    m.nodes.failure.reset();
    m.advance(2s);
    m.expect("helper.started");
    m.switches = {.accessibility = true, .screenRecording = true};
    m.advance(2s);
    m.expect("switches.changed driver.started endpoint.published helper.stopped helper.started");
    m.drivers.last().end(ExitStatus::signaled(9));
    m.expect("driver.ended driver.restart endpoint.withdrawn helper.stopped helper.started");
    EXPECT_EQ(m.last(EventCode::driverEnded).number(EventField::signal), 9);
    m.model().stop([] {});
    m.expect("helper.stopped");
}

TEST(RecordedEvents, tellRefusalFromCancelAndEnd) {
    RecordedMachine m;
    m.install();
    m.start();
    m.expect("helper.waiting");
    m.model().pairing().connect(FakeMachine::link('b'));
    m.expect("pairing.begun pairing.refused");
    m.pairUpToPrompt();
    m.model().pairing().cancel();
    m.expect("pairing.begun pairing.prompted pairing.cancelled helper.waiting");
    m.pairUpToPrompt();
    m.terminals.last().end(ExitStatus::exited(1));
    m.expect("pairing.begun pairing.prompted pairing.ended helper.waiting");
    m.join();
    m.model().pairing().connect(FakeMachine::link('b'));
    m.model().pairing().declineOffer();
    m.expect("pairing.offered pairing.cancelled");
}

TEST(RecordedEvents, nameTheDriverThatIsNoLongerStarted) {
    RecordedMachine m;
    m.install();
    m.driverIsReady = false;
    m.switches = {.accessibility = true, .screenRecording = true};
    m.start();
    m.advance(90s);
    EXPECT_EQ(m.journal->events().back().code, EventCode::driverGivenUp);
    EXPECT_EQ(std::ranges::count(m.journal->events(), EventCode::driverStartFailed, &JournalEvent::code), 6);
}

TEST(RecordedEvents, includeAFailedInstall) {
    RecordedMachine m;
    m.start();
    m.expect("install.begun install.refused");
}

TEST(JournalFacts, explainAHelperThatFailsAgainAndAgain) {
    RecordedMachine m;
    m.install();
    m.join();
    int reads = 0;
    JournalFacts facts({.mainThread = m.main.record(),
                        .detach = m.deps.platform.detach,
                        .installedVersion = [] { return "2026.1"; },
                        .lastLines = [&] { return "read " + std::to_string(++reads); }},
                       m.journal, m.sharedModel());
    const auto& helper = m.state().helper;
    const auto fail = [&](Seconds restart) {
        m.advance(restart);
        EXPECT_TRUE(helper.since && (!helper.trouble || helper.trouble->isRunning));
        m.nodes.last().end(ExitStatus::exited(3));
        m.settle();
        EXPECT_FALSE(helper.since);
        return helper.trouble ? helper.trouble->times : 0;
    };
    m.start();
    EXPECT_EQ(fail(0s), 0);
    EXPECT_EQ(fail(1s), 2);
    EXPECT_EQ(helper.lastLines, "");
    m.advance(250ms);
    EXPECT_EQ(helper.lastLines, "read 1");
    EXPECT_EQ(fail(2s), 3);
    EXPECT_EQ(helper.lastLines, "read 1") << "until the log is read again";
    m.advance(2s);
    EXPECT_EQ(helper.lastLines, "read 2") << "one read for each failure";
    m.advance(2s);
    EXPECT_TRUE(helper.trouble && helper.trouble->isRunning && helper.lastLines == "read 2");
    m.advance(60s);
    EXPECT_TRUE(!helper.trouble && helper.lastLines.empty()) << "a run of a minute ends the trouble";
}

// The disk hangs until `finish` is called.
TEST(JournalFacts, repeatAReadThatBeganBeforeTheLatestFailure) {
    RecordedMachine m;
    std::vector<BackgroundTasks::Task> reads;
    JournalFacts facts({.mainThread = m.main.record(),
                        .detach =
                            [&](const std::string&, BackgroundTasks::Task task) {
                                reads.push_back(std::move(task));
                                return true;
                            },
                        .installedVersion = [] { return ""; },
                        .lastLines = [&] { return "read " + std::to_string(reads.size()); }},
                       m.journal, m.sharedModel());
    const auto fail = [&] {
        m.journal->record(EventCode::helperEnded, "", {{EventField::ranFor, std::int64_t{1}}});
        m.journal->record(EventCode::helperRestart, "");
        m.settle();
        m.advance(250ms);
    };
    fail();
    fail();
    fail();
    ASSERT_EQ(reads.size(), 1U);
    reads[0]();
    m.settle();
    EXPECT_EQ(m.state().helper.lastLines, "");
    ASSERT_EQ(reads.size(), 2U);
    reads[1]();
    m.settle();
    EXPECT_EQ(m.state().helper.lastLines, "read 2");
}

TEST(JournalFacts, followUpdatesVersionsAndTheDriver) {
    RecordedMachine m;
    JournalFacts facts({.mainThread = m.main.record(),
                        .detach = m.deps.platform.detach,
                        .installedVersion = [] { return "2026.1"; },
                        .lastLines = [] { return ""; }},
                       m.journal, m.sharedModel());
    const auto after = [&](EventCode code, const char* version = "") -> const AppState& {
        m.journal->record(code, "", {{EventField::version, version}});
        m.settle();
        return m.state();
    };
    facts.setChecksForUpdates(true);
    EXPECT_TRUE(m.state().checksForUpdates);
    EXPECT_EQ(after(EventCode::updateWaiting, "2").waitingUpdate, "2");
    EXPECT_EQ(after(EventCode::updateInstalled).waitingUpdate, std::nullopt);
    EXPECT_EQ(after(EventCode::pairingConnected).helper.version, "2026.1");
    EXPECT_TRUE(m.state().helper.since);
    EXPECT_EQ(after(EventCode::helperStarted, "2026.2").helper.version, "2026.2");
    EXPECT_TRUE(after(EventCode::driverGivenUp).driverHasGivenUp);
    EXPECT_TRUE(after(EventCode::helperStarted).driverHasGivenUp);
    EXPECT_FALSE(after(EventCode::driverStarted).driverHasGivenUp);
}

// Every event has a secret in each text, and the whole life of a link passes through the recorders.
TEST(RecordedEvents, containNoSecret) {
    RecordedMachine m;
    const std::string code = FakeMachine::code('a');
    const std::string address = "https://join.example/c/" + code;
    const std::string token = "eyJhbGciOiJFZERTQSJ9";
    for (int i = 0; i <= static_cast<int>(EventCode::updateInstalled); ++i) {
        m.journal->record(static_cast<EventCode>(i), "connect " + code + " at " + address,
                          {{"a", address}, {"b", "Bearer " + token}, {"c", "key=short"}});
    }
    m.install();
    m.start();
    m.goodLinks.insert(code);
    m.terminals.failure = SystemError{.call = "posix_spawn connect " + address, .code = EACCES};
    m.model().pairing().connect(FakeMachine::link('a'));
    m.settle();
    m.terminals.failure.reset();
    m.pairUpToPrompt();
    m.terminals.last().print(address + " " + token);
    m.terminals.last().end(ExitStatus::exited(1));
    EXPECT_TRUE(eventually([&] {
        m.settle();
        return m.last(EventCode::pairingEnded).number(EventField::exit) == 1;
    }));
    const std::string file = m.folder.read("tarnik.log");
    EXPECT_TRUE(file.contains("update.installed"));
    for (const auto& secret : {code, std::string("/c/"), token, std::string("short")})
        EXPECT_FALSE(file.contains(secret)) << secret;
}

}  // namespace
}  // namespace tarnik
