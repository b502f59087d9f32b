#include "app/pairing/LinkPairing.h"

#include <gtest/gtest.h>

#include "app/texts/FailureTexts.h"
#include "app/texts/LinkTexts.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {

using namespace std::chrono_literals;
using Started = StartedMachine;

const std::string busy = describe(PairingFailure::busy);

// The service accepts the links a and c. The last one that began a session is named after the number of
// sessions.
TEST(LinkPairing, servesOneLinkAtATime) {
    const std::string expired(LinkTexts::linkExpired), checking(LinkTexts::checkingLink);
    const std::string noTerminal = messageFor(PairingError(SystemError{"forkpty", EAGAIN}));
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {"link:b", expired, "0"},
        {"link:b join +2", "", "0"},
        {"check:a", checking, "0"},
        {"check:a check:c", busy, "0"},
        {"check:a check:c hide", checking, "0"},
        {"check:a check:c settle", busy, "starting 1a"},
        {"check:a check:c settle cancel", "", "1a"},
        {"busy link:a", std::string(FailureTexts::tooBusy), "0"},
        {"fail link:a", noTerminal, "0"},
        {"fail link:a heal link:a", "", "starting 1a"},
        {"join link:a", "", "offer 0"},
        {"join link:a decline", "", "0"},
        {"join link:a replace:a settle", "", "starting 1a"},
        {"link:a prompt", "", "waitingForYes 1a"},
        {"link:a prompt link:c", busy, "waitingForYes 1a"},
        {"link:a prompt link:c confirm dismiss settle", busy, "connecting 1a"},
        {"link:a prompt link:c confirm join +15", "", "connected 1a"},
        {"link:a prompt confirm join +15 dismiss", "", "1a"},
        {"link:a prompt ended", "", "ended (exit 1) 1a"},
        {"link:a prompt ended link:c", "", "starting 2c"},
        // Nothing of a cancelled link reaches the next one.
        {"check:a cancel link:c", "", "starting 1c"},
        {"hold link:a cancel go link:c", "", "starting 1c"},
        {"hold link:a go cancel settle", "", "1a"},  // before the main thread knows of the session
        {"hold link:a go cancel settle link:c", "", "starting 2c"},
        {"link:a prompt cancel settle", "", "1a"},
    };
    for (const auto& [events, message, left] : cases) {
        Started f;
        f.goodLinks = {FakeMachine::code('a'), FakeMachine::code('c')};
        f.act(events);
        const auto& pairing = f.state().pairing;
        std::string text = f.state().replaceOffer ? "offer " : pairing ? describe(pairing->phase) + " " : "";
        text += std::to_string(f.terminals.count());
        if (f.terminals.count() > 0) text += f.terminals.last().request().arguments.back().back();
        EXPECT_EQ(text, left) << events;
        EXPECT_EQ(f.state().linkMessage.value_or(""), message) << events;
        EXPECT_FALSE(events.contains("cancel") && !pairing && f.liveNodes() > 0) << events;
    }
    Started f;
    f.model().pairing().connect("see " + FakeMachine::link('a'));
    EXPECT_EQ(f.state().linkMessage, LinkTexts::notALink);
}

TEST(LinkPairing, reportsTheCauseOfAFailedCheck) {
    Started f;
    f.linkFailure = {.kind = HttpError::Kind::unresolved};
    f.act("link:b");
    EXPECT_EQ(f.state().linkCause, FailureCause::offline);
    f.act("join +2");
    EXPECT_EQ(f.state().linkCause, std::nullopt);
}

TEST(LinkPairing, pairsAndShowsHowItEnded) {
    Started f;
    f.pairUpToPrompt();
    f.act("confirm");
    EXPECT_EQ(f.terminals.last().typed(), "\n");
    f.act("join +15");
    EXPECT_TRUE(f.pairingIs(PairingPhases::Connected{}));
    EXPECT_EQ(f.state().node, NodeState(NodeStates::Running{}));
    EXPECT_TRUE(f.state().needsAttention());
    f.act("dismiss");
    EXPECT_FALSE(f.state().pairing);
}

TEST(LinkPairing, postsOneTaskForTheSnapshotsThatWait) {
    std::atomic<int> posted = 0;  // outlives the machine, which posts until its end
    FakeMachine f;
    f.install();
    f.deps.platform.mainThread.post = [&posted, post = f.deps.platform.mainThread.post](auto task) {
        ++posted;
        post(std::move(task));
    };
    f.model().start();
    f.settle();
    f.pairUpToPrompt();
    posted = 0;
    f.terminals.last().print("more\n");
    EXPECT_TRUE(eventually([&] { return posted == 1; }));
    f.terminals.last().end(ExitStatus::exited(1));
    EXPECT_EQ(posted, 2) << "the snapshots, and the state of the node";
    EXPECT_TRUE(f.pairingIs(PairingPhases::Ended{ExitStatus::exited(1)}));
}

TEST(LinkPairing, ignoresResultsAfterItsEnd) {
    auto f = std::make_unique<Started>();
    f->goodLinks = {FakeMachine::code('a')};
    f->model().pairing().connect(FakeMachine::link('a'));
    auto late = std::exchange(f->detached, {});
    f.reset();
    for (auto& task : late) task = nullptr;
}

}  // namespace tarnik
