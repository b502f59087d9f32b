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

TEST(LinkPairing, acceptsALinkOnlyByTheRules) {
    Started joinsElsewhere;
    joinsElsewhere.giveLink('b');
    EXPECT_EQ(joinsElsewhere.state().linkMessage, LinkTexts::linkExpired);
    EXPECT_EQ(joinsElsewhere.state().linkCause, std::nullopt);
    joinsElsewhere.linkFailure = {.kind = HttpError::Kind::unresolved};
    joinsElsewhere.giveLink('b');
    EXPECT_EQ(joinsElsewhere.state().linkCause, FailureCause::offline);
    joinsElsewhere.join();
    joinsElsewhere.advance(2s);
    EXPECT_EQ(joinsElsewhere.state().linkMessage, std::nullopt);
    EXPECT_EQ(joinsElsewhere.state().linkCause, std::nullopt);

    Started f;
    f.goodLinks = {FakeMachine::code('a')};
    f.model().pairing().connect("see " + FakeMachine::link('a'));
    EXPECT_EQ(f.state().linkMessage, LinkTexts::notALink);
    f.model().pairing().connect(FakeMachine::link('a'));
    EXPECT_EQ(f.state().linkMessage, LinkTexts::checkingLink);
    EXPECT_TRUE(f.state().checkingLink);
    f.model().pairing().connect(FakeMachine::link('b'));
    EXPECT_EQ(f.state().linkMessage, busy);
    f.model().pairing().dismissMessage();
    EXPECT_EQ(f.state().linkMessage, LinkTexts::checkingLink) << "the check continues";
    f.model().pairing().connect(FakeMachine::link('b'));
    f.settle();
    EXPECT_EQ(f.terminals.count(), 1U) << "the first link continues";
    EXPECT_TRUE(f.pairingIs(PairingPhases::Starting{}));
    EXPECT_EQ(f.state().linkMessage, busy) << "until the pairing is over";
    f.model().pairing().cancel();
    EXPECT_EQ(f.state().linkMessage, std::nullopt);
}

TEST(LinkPairing, offersToReplaceAnAccount) {
    Started f;
    f.join();
    f.goodLinks = {FakeMachine::code('a')};
    f.giveLink('a');
    EXPECT_EQ(f.state().replaceOffer, FakeMachine::joinCode('a'));
    f.model().pairing().declineOffer();
    EXPECT_EQ(f.state().replaceOffer, std::nullopt);
    EXPECT_EQ(f.terminals.count(), 0U);
    f.giveLink('a');
    f.replaceBy('a');
    f.settle();
    EXPECT_EQ(f.terminals.count(), 1U);
    EXPECT_EQ(f.state().replaceOffer, std::nullopt);
}

TEST(LinkPairing, pairsAndShowsHowItEnded) {
    Started f;
    f.pairUpToPrompt();
    EXPECT_EQ(f.state().linkMessage, std::nullopt);
    f.giveLink('b');
    EXPECT_EQ(f.state().linkMessage, busy);
    f.model().pairing().confirm();
    EXPECT_EQ(f.terminals.last().typed(), "\n");
    f.model().pairing().dismissOutcome();
    f.settle();
    EXPECT_TRUE(f.state().pairing) << "the pairing continues";
    f.join();
    f.advance(15s);
    EXPECT_TRUE(f.pairingIs(PairingPhases::Connected{}));
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the next link is accepted";
    EXPECT_EQ(f.state().node, NodeState(NodeStates::Running{}));
    EXPECT_TRUE(f.state().needsAttention());
    f.model().pairing().dismissOutcome();
    EXPECT_FALSE(f.state().pairing);

    Started failing;
    failing.pairUpToPrompt();
    failing.terminals.last().end(ExitStatus::exited(1));
    EXPECT_TRUE(failing.pairingIs(PairingPhases::Ended{ExitStatus::exited(1)}));
    failing.giveLink('a');
    EXPECT_EQ(failing.terminals.count(), 2U) << "without dismissing the outcome";
}

TEST(LinkPairing, reportsASessionThatCantBegin) {
    Started f;
    f.goodLinks = {FakeMachine::code('a')};
    f.threadsAreLeft = false;
    f.giveLink('a');
    EXPECT_EQ(f.state().linkMessage, FailureTexts::tooBusy);
    f.threadsAreLeft = true;
    f.terminals.failure = SystemError{.call = "forkpty", .code = EAGAIN};
    f.giveLink('a');
    EXPECT_FALSE(f.state().checkingLink);
    EXPECT_TRUE(f.state().linkMessage.value_or("").contains("forkpty"));
    f.terminals.failure.reset();
    f.giveLink('a');
    EXPECT_EQ(f.terminals.count(), 1U);
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

// Cancels a link at each moment and gives the next one at once. Nothing of the first reaches the second.
TEST(LinkPairing, forgetsACancelledLink) {
    for (const bool isBeingChecked : {true, false}) {
        Started f;
        f.goodLinks = {FakeMachine::code('a'), FakeMachine::code('b')};
        f.queues.at("tarnik.node")->hold();
        f.model().pairing().connect(FakeMachine::link('a'));
        if (!isBeingChecked) f.settle();
        f.model().pairing().cancel();
        EXPECT_EQ(f.state().linkMessage, std::nullopt);
        f.queues.at("tarnik.node")->letGo();
        EXPECT_EQ(f.terminals.count(), 0U);
        f.giveLink('b');
        ASSERT_EQ(f.terminals.count(), 1U);
        EXPECT_TRUE(f.terminals.last().request().arguments.back().ends_with("/c/" + FakeMachine::code('b')));
    }

    Started began;  // the session has begun, unknown to the main thread
    began.goodLinks = {FakeMachine::code('a'), FakeMachine::code('b')};
    began.queues.at("tarnik.node")->hold();
    began.giveLink('a');
    began.queues.at("tarnik.node")->letGo();
    began.model().pairing().cancel();
    began.settle();
    EXPECT_TRUE(began.terminals.last().handle()->exitStatus());
    EXPECT_FALSE(began.state().pairing);
    began.giveLink('b');
    EXPECT_EQ(began.terminals.count(), 2U);
    EXPECT_TRUE(began.pairingIs(PairingPhases::Starting{}));

    Started underWay;
    underWay.pairUpToPrompt();
    underWay.model().pairing().cancel();
    underWay.settle();
    EXPECT_FALSE(underWay.state().pairing) << "late snapshots are ignored";
    EXPECT_EQ(underWay.terminals.last().handle()->exitStatus(), ExitStatus::signaled(SIGTERM));
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
