#include "app/model/AppModel.h"

#include <filesystem>
#include <random>

#include <gtest/gtest.h>

#include "app/model/UserIntent.h"
#include "app/texts/LinkTexts.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/Words.h"

namespace tarnik {

using namespace std::chrono_literals;

using Started = StartedMachine;

const std::string stillInstalling(LinkTexts::stillInstalling);

TEST(AppModel, startsNothingAfterAFailedInstallOrWithoutAHome) {
    FakeMachine failing;
    failing.releaseBase = "https://release.example";
    failing.model().start();
    failing.settle();
    const auto* failed = std::get_if<Setups::Failed>(&failing.state().setup);
    EXPECT_TRUE(failed != nullptr && failed->text.contains("stable.json"));
    EXPECT_EQ(failing.state().node, NodeState(NodeStates::Stopped{}));

    for (const bool hasAgent : {false, true}) {
        FakeMachine f;
        if (hasAgent) f.leaveAgent();
        f.threadsAreLeft = false;
        f.model().start();
        EXPECT_TRUE(std::holds_alternative<Setups::Failed>(f.state().setup));
        f.threadsAreLeft = true;
        f.install();
        for (int i = 0; i < 2; ++i) f.model().retryInstallation();
        f.settle();
        EXPECT_EQ(f.state().node, NodeState(NodeStates::WaitingForLink{}));
    }

    FakeMachine homeless;
    homeless.flags = {"AccessibilityWasOn"};
    homeless.texts["NodeHome"] = "not/absolute";
    homeless.model().start();
    EXPECT_TRUE(homeless.state().homeError.value_or("").contains("not/absolute"));
    EXPECT_FALSE(homeless.model().hasStarted());
    EXPECT_EQ(homeless.state().status(Switch::accessibility), SwitchStatus::mayBeStale);
    homeless.model().pairing().connect(FakeMachine::link());
    EXPECT_EQ(homeless.state().linkMessage, stillInstalling);
}

TEST(AppModel, installsAgainOnlyIfTheHelperIsAbsent) {
    FakeMachine f;
    f.releaseBase = "https://release.example";
    int installs = 0;
    f.deps.installer.fetch = [&](const std::string&) -> std::expected<std::string, InstallError> {
        ++installs;
        return std::unexpected(HttpError{.kind = HttpError::Kind::unreachable});
    };
    const auto installsAfter = [&](int clicks) {
        for (int i = 0; i < clicks; ++i)
            performIntent({.kind = UserIntent::Kind::retryInstall}, "", f.model());
        f.settle();
        return installs;
    };
    EXPECT_EQ(installsAfter(1), 0) << "before the start";
    f.model().start();
    EXPECT_EQ(installsAfter(2), 1) << "while it installs";
    EXPECT_EQ(installsAfter(2), 2);
    f.install();
    EXPECT_EQ(installsAfter(1), 2);
    EXPECT_EQ(f.state().node, NodeState(NodeStates::WaitingForLink{}));
    std::filesystem::remove_all(f.home().path);
    EXPECT_EQ(installsAfter(1), 2) << "the model doesn't know it yet";
    f.model().restartHelper([](bool) {});
    f.settle();
    EXPECT_EQ(f.state().node, NodeState(NodeStates::NotInstalled{}));
    EXPECT_EQ(installsAfter(1), 3);
    f.model().stop([] {});
    EXPECT_EQ(installsAfter(1), 3);
}

TEST(AppModel, endsAnOldAgentBeforeAnythingRuns) {
    FakeMachine f;
    f.leaveAgent();
    f.deps.launchd.launchctl = [&](const std::vector<std::string>& arguments) {
        EXPECT_EQ(f.nodes.count() + f.drivers.count(), 0U);
        return ExitStatus::exited(arguments.at(0) == "bootout" ? 0 : 113);
    };
    f.install();
    f.join();
    f.switches = {true, true};
    int started = 0;
    for (int i = 0; i < 2; ++i) f.model().start([&] { ++started; });
    f.main.advance(10s);  // launchctl has not answered yet
    f.model().refreshSwitches();
    f.model().pairing().connect(FakeMachine::link());
    EXPECT_EQ(f.state().linkMessage, stillInstalling);
    EXPECT_EQ(f.queues.size(), 2U) << "no queue of a supervisor or of a driver host";
    f.settle();
    EXPECT_EQ(started, 1);
    EXPECT_EQ(f.state().setup, tarnik::Setup(Setups::Ready{}));
    EXPECT_EQ(f.liveNodes() + f.liveDrivers(), 2U);
    EXPECT_TRUE(f.state().joined);
    EXPECT_EQ(f.state().linkMessage, std::nullopt);
    EXPECT_EQ(f.log.at(0), "took over the node's LaunchAgent: stopped true, removed true");

    FakeMachine quits;
    quits.leaveAgent();
    quits.model().start([] { ADD_FAILURE() << "the model has stopped"; });
    quits.model().stop([] {});
    quits.settle();
    EXPECT_FALSE(quits.model().hasStarted());
}

TEST(AppModel, theDriverRunsWhileBothSwitchesAreOn) {
    Started f;
    const auto driversWith = [&](SwitchSnapshot switches) {
        f.switches = switches;
        f.advance(2s);
        return f.liveDrivers();
    };
    EXPECT_EQ(driversWith({true, false}), 0U);
    EXPECT_TRUE(f.flags.contains("AccessibilityWasOn"));
    EXPECT_EQ(driversWith({true, true}), 1U);
    EXPECT_TRUE(f.state().endpoint);
    f.advance(10s);
    EXPECT_EQ(f.drivers.count(), 1U);

    f.queues.at("tarnik.driver")->hold();
    for (const bool isOn : {false, true}) driversWith({true, isOn});
    f.queues.at("tarnik.driver")->letGo();
    EXPECT_EQ(f.drivers.count(), 2U) << "a driver has the rights of its start";
    EXPECT_EQ(driversWith({false, true}), 0U);
    EXPECT_FALSE(f.state().endpoint);
    EXPECT_EQ(f.state().status(Switch::accessibility), SwitchStatus::mayBeStale);

    f.driverIsReady = false;
    f.whileDriverStarts = [&] {
        f.switches = {false, true};
        f.model().refreshSwitches();
    };
    f.switches = {true, true};
    const auto before = f.clock->now();
    f.model().refreshSwitches();
    EXPECT_LT(f.clock->now() - before, 1s) << "doesn't wait for a driver that is no longer wanted";
    EXPECT_EQ(f.liveDrivers(), 0U);
}

TEST(AppModel, samplesTheActivity) {
    FakeMachine f;
    const auto sample = [&] {
        ActivitySample taken;
        f.model().activitySample([&](const ActivitySample& given) { taken = given; });
        f.main.run();
        return taken;
    };
    EXPECT_TRUE(sample().settingUp && !sample().nodePID);
    f.install();
    f.join();
    f.switches = {true, true};
    f.model().start();
    f.settle();
    f.windowInUse = true;
    EXPECT_TRUE(!sample().settingUp && sample().windowInUse);
    EXPECT_EQ(sample().nodePID, f.nodes.last().handle()->pid());
    EXPECT_EQ(sample().driverPID, f.drivers.last().handle()->pid());
    f.replaceBy('a');
    EXPECT_TRUE(sample().settingUp);
    f.settle();
    EXPECT_FALSE(sample().settingUp) << "a refused link is no pairing";
}

TEST(AppModel, startsNothingOnceItStops) {
    FakeMachine installing;
    installing.install();
    installing.join();
    installing.model().start();
    installing.model().stop([] {});
    installing.settle();
    EXPECT_EQ(installing.nodes.count(), 0U);

    FakeMachine f;  // stops while its node restarts for a new endpoint
    f.install();
    f.join();
    f.nodes.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.nodes.onWait = [&](Seconds) { f.model().stop([] {}); };
    f.model().start();
    f.switches = {true, true};
    f.advance(4s);
    EXPECT_EQ(f.nodes.count(), 1U);
    EXPECT_EQ(f.liveDrivers(), 0U);
}

TEST(AppModel, followsTheLatestEndpointAndEndsTheDriverAfterTheNode) {
    FakeMachine f;
    f.install();
    f.join();
    f.nodes.stopBehaviour = FakeChild::StopBehaviour::ignores;
    f.nodes.onWait = [&](Seconds) { EXPECT_TRUE(!f.state().stopping || f.liveDrivers() == 1U); };
    f.model().start();
    f.settle();
    f.queues.at("tarnik.node")->hold();
    for (const bool on : {true, false, true, false, true}) {
        f.switches = {true, on};
        f.advance(2s);
    }
    f.queues.at("tarnik.node")->letGo();
    EXPECT_EQ(f.nodes.count(), 2U);
    f.model().stop([] {});
    f.settle();
    EXPECT_EQ(f.liveDrivers(), 0U);
}

// Events in random order: at most one helper, one driver and one session run, and none after stop().
TEST(AppModel, keepsItsPromisesThroughRandomEvents) {
    for (unsigned seed = 1; seed <= 30; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto chance = [&](unsigned of) { return random() % of == 0; };
        FakeMachine f;
        if (!chance(4)) f.install();
        if (chance(2)) f.join();
        f.goodLinks = {FakeMachine::code('a')};
        f.model().start();
        const auto events = words(
            "link:a check:a check:b replace:a replace:b cancel confirm dismiss +1 +16 print "
            "exit crash die hold go settle settle");
        for (int step = 0; step < 60; ++step) {
            if (chance(12)) f.switches = {!chance(3), !chance(3)};
            const auto& event = events[random() % events.size()];
            f.act(event);
            ASSERT_LE(f.liveNodes(), 1U) << "step " << step << ": " << event;
            ASSERT_LE(f.liveDrivers(), 1U) << "step " << step << ": " << event;
        }
        bool stopped = false;
        f.model().stop([&] { stopped = true; });
        EXPECT_TRUE(f.state().stopping);
        f.queues.at("tarnik.node")->letGo();
        f.settle();
        ASSERT_TRUE(stopped);
        const auto published = f.states.size();
        f.switches = {!f.switches.accessibility, true};
        f.model().pairing().connect(FakeMachine::link());
        f.model().refreshSwitches();
        f.advance(30s);
        EXPECT_EQ(f.states.size(), published);
        EXPECT_EQ(f.liveNodes() + f.liveDrivers(), 0U);
        EXPECT_FALSE(f.state().pairing);
    }
}

}  // namespace tarnik
