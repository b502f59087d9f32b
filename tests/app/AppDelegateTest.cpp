#include "app/AppDelegate.h"

#include <gtest/gtest.h>

#include "app/Application.h"
#include "app/model/ChangeFeed.h"
#include "app/texts/LinkTexts.h"
#include "core/foundation/TarnikIdentity.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

// A delegate that records every call to the outside in order.
struct Fixture : FakeMachine {
    std::vector<std::string> calls;
    std::function<void(RelocationOutcome)> relocated;
    std::function<void(const std::string&)> openLink;
    std::function<void()> secondOpen;
    std::function<void()> becomeActive;
    std::function<bool(const std::string&, UpdateFramework::Install)> updateIsReady;
    UpdateSettings updates;
    std::optional<std::string> bundlePath;
    int installed = 0;
    std::optional<std::string> handedOn, handed, inUse;
    std::string field;
    bool showsWindow = false;
    int startsToTakeLinks = 0;
    std::optional<AppDelegate> made;

    ~Fixture() { made.reset(); }
    AppDelegate& delegate() {
        if (!made) made.emplace(makeDeps(), sharedModel());
        return *made;
    }
    void call(const std::string& name) { calls.push_back(name); }
    auto calling(const std::string& name) {
        return [this, name](const auto&...) { call(name); };
    }
    // The operation keeps its handler.
    auto calling(const std::string& name, auto& kept) {
        return [this, name, &kept](auto handler) {
            call(name);
            kept = std::move(handler);
        };
    }
    long windows() const { return std::ranges::count(calls, "window"); }
    Presentation presentation() {
        return {.makeStatusItem =
                    [this](const MenuContent& menu) {
                        call("menu of " + std::to_string(menu.entries.size()) +
                             (model().hasStarted() ? " late" : ""));
                    },
                .showWindow = calling("window"),
                .showAlert = [this](const auto& title, const auto&) { call("alert " + title); },
                .fillLinkField = [this](const std::string& link) { field = link; },
                .refuse =
                    [this](const std::string& why, const auto& seen) {
                        call("refuse: " + why);
                        seen();
                    },
                .end = [this](int status) { call("end " + std::to_string(status)); }};
    }
    AppDelegateDeps makeDeps() {
        return {.bundlePath = bundlePath,
                .relocateIfNeeded = calling("relocate", relocated),
                .recordWindow = [this](const std::string& reason) { call("record " + reason); },
                .handLinkOn = [this](const std::string& link) { handedOn = link; },
                .takeHandedLink = [this] { return handed; },
                .takeNodeHome =
                    [this](const auto& done) {
                        call("take home");
                        done(inUse);
                    },
                .ensureLoginItem = calling("login item"),
                .makeUpdater =
                    [this] {
                        call("updater");
                        return std::make_unique<Updater>(updates, updaterDeps());
                    },
                .takesLinks = [this] { ++startsToTakeLinks; },
                .showsWindow = showsWindow,
                .mainThread = main.record(),
                .presentation = presentation(),
                .events = {.onLink = calling("links", openLink),
                           .onSecondOpen = [this](auto handler) { secondOpen = std::move(handler); },
                           .onBecameActive = [this](auto handler) { becomeActive = std::move(handler); }}};
    }
    Updater::Deps updaterDeps() {
        const auto make = [this](auto handler) -> UpdateFramework::Controller {
            updateIsReady = std::move(handler);
            return {[] {}, [] {}, [] {}, calling("check for updates")};
        };
        return {.framework = {.makeController = make},
                .mainThread = main.record(),
                .log = [](const std::string&) {},
                .now = [this] { return clock->now(); }};
    }
    void launch(const RelocationOutcome& outcome = RelocationOutcomes::Stay{}) {
        delegate().willFinishLaunching();
        delegate().didFinishLaunching();
        relocated(outcome);
    }
    void useUpdates() { updates = {.feedURL = "https://feed.example", .publicKey = "key"}; }
    void beReady() {
        install();
        join();
        switches = {true, true};
    }
};

TEST(AppDelegate, launchesInOrder) {
    Fixture f;
    f.bundlePath = TarnikIdentity::installPath;
    f.useUpdates();
    f.launch(RelocationOutcomes::StayWithMessage{"Move tarnik", "…"});
    EXPECT_EQ(f.calls, (std::vector<std::string>{"links", "relocate", "take home", "login item", "updater",
                                                 "menu of 4", "record open", "window", "alert Move tarnik"}));
    EXPECT_TRUE(f.model().hasStarted());
    f.secondOpen();
    f.delegate().reopen();
    f.delegate().openWindow();
    EXPECT_EQ(std::vector<std::string>(f.calls.begin() + 9, f.calls.end()),
              (std::vector<std::string>{"record secondOpen", "window", "record reopen", "window",
                                        "record open", "window"}));
}

TEST(AppDelegate, showsNoWindowUnlessTheUserHasToAct) {
    Fixture f;
    f.bundlePath = "/Users/me/Downloads/tarnik.app";
    f.beReady();
    f.launch();
    f.settle();
    EXPECT_EQ(f.calls, (std::vector<std::string>{"links", "relocate", "take home", "updater", "menu of 3"}));
    f.switches.accessibility = false;
    f.becomeActive();
    EXPECT_FALSE(f.state().switches.accessibility);
}

TEST(AppDelegate, showsTheWindowOnceTheUserHasToAct) {
    Fixture failing;  // the install fails
    failing.switches = {true, true};
    failing.launch();
    EXPECT_EQ(failing.windows(), 0);
    failing.settle();
    EXPECT_EQ(failing.windows(), 1);

    Fixture waiting;  // the node waits for a link
    waiting.switches = {true, true};
    waiting.install();
    waiting.launch();
    EXPECT_EQ(waiting.windows(), 0);
    waiting.settle();
    EXPECT_EQ(waiting.windows(), 1);
    waiting.delegate().windowClosed();
    waiting.switches = {};
    waiting.advance(10s);
    EXPECT_EQ(waiting.windows(), 1) << "the user has closed it";

    Fixture asked;  // shown for both reasons
    asked.switches = {true, true};
    asked.install();
    asked.showsWindow = true;
    asked.launch();
    asked.settle();
    EXPECT_EQ(asked.windows(), 1);
}

TEST(AppDelegate, endsIfAnotherProgramUsesTheHome) {
    Fixture f;
    f.inUse = "in use";
    f.launch();
    f.openLink(FakeMachine::link());
    f.settle();
    EXPECT_EQ(f.calls,
              (std::vector<std::string>{"links", "relocate", "take home", "refuse: in use", "end 5"}));
    EXPECT_FALSE(f.model().hasStarted());
}

TEST(AppDelegate, fillsTheLinkFieldWithALinkThatIsTooEarly) {
    Fixture f;
    f.deps.installer.fetch = [&](const std::string&) -> std::expected<std::string, InstallError> {
        f.install();
        return std::unexpected(InstallFailure{InstallFailure::Kind::download, "stable.json"});
    };
    f.releaseBase = "https://release.example";
    f.launch();
    f.openLink(FakeMachine::link());
    EXPECT_EQ(f.state().linkMessage, LinkTexts::stillInstalling);
    EXPECT_EQ(f.field, FakeMachine::link());
    f.settle();
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the install has ended";
    f.openLink(FakeMachine::link('b'));
    f.settle();
    EXPECT_EQ(f.state().linkMessage, LinkTexts::linkExpired);
    EXPECT_EQ(f.field, FakeMachine::link());
    f.delegate().windowClosed();
    EXPECT_EQ(f.state().linkMessage, std::nullopt);
}

TEST(AppDelegate, readsTheSwitchesWithoutAHome) {
    Fixture f;
    f.texts["NodeHome"] = "not/absolute";
    f.switches = {true, true};
    f.launch();
    EXPECT_FALSE(f.model().hasStarted());
    EXPECT_TRUE(f.state().switches.allOn());
    EXPECT_EQ(f.calls.back(), "window");
}

TEST(AppDelegate, handsItsLinkToTheCopyThatReplacesIt) {
    Fixture f;
    f.delegate().willFinishLaunching();
    f.openLink(FakeMachine::link('b'));
    f.launch(RelocationOutcomes::Moving{});
    EXPECT_EQ(f.handedOn, FakeMachine::link('b'));
    f.openLink(FakeMachine::link('a'));  // while it ends
    f.settle();
    EXPECT_EQ(f.calls.back(), "end 0");
    EXPECT_FALSE(f.model().hasStarted());

    Fixture other;
    other.install();
    other.handed = f.handedOn;
    other.goodLinks = {FakeMachine::code('a')};
    other.launch();
    other.settle();
    EXPECT_EQ(other.terminals.count(), 1U) << "with the handed link";
}

TEST(AppDelegate, keepsTheLatestLinkUntilTheModelAcceptsLinks) {
    Fixture f;
    f.install();
    f.leaveAgent();
    f.goodLinks = {FakeMachine::code('a'), FakeMachine::code('b')};
    f.delegate().willFinishLaunching();
    f.openLink("not a link");
    EXPECT_EQ(f.calls, std::vector<std::string>{"links"});
    f.openLink(FakeMachine::link('a'));
    f.delegate().didFinishLaunching();
    f.relocated(RelocationOutcomes::Stay{});
    f.openLink(FakeMachine::link('b'));
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the link waits for the end of the agent";
    EXPECT_EQ(f.startsToTakeLinks, 0);
    f.settle();
    EXPECT_EQ(f.startsToTakeLinks, 1);
    ASSERT_EQ(f.terminals.count(), 1U);
    EXPECT_TRUE(f.terminals.last().request().arguments.back().ends_with("/c/" + FakeMachine::code('b')));
    const auto windows = f.windows();
    f.openLink(FakeMachine::link('a'));
    EXPECT_EQ(f.windows(), windows + 1) << "even if the model refuses the link";
    EXPECT_EQ(f.terminals.count(), 1U);
}

TEST(AppDelegate, connectsTheUpdaterAfterTheLaunch) {
    Fixture f;
    f.useUpdates();
    f.beReady();
    f.delegate().checkForUpdates();
    f.launch();
    f.settle();
    f.delegate().checkForUpdates();
    EXPECT_EQ(std::ranges::count(f.calls, "check for updates"), 1);
    f.updateIsReady("2", [&] { ++f.installed; });
    f.advance(720s);
    EXPECT_EQ(f.installed, 1);
}

TEST(AppDelegate, quitsInOrderAndOnce) {
    Fixture f;
    f.useUpdates();
    f.beReady();
    f.launch();
    f.settle();
    f.updateIsReady("2", [&] { ++f.installed; });
    f.calls.clear();
    f.delegate().quit();
    f.delegate().quit();
    EXPECT_TRUE(f.state().stopping);
    f.openLink(FakeMachine::link());
    f.delegate().openWindow();
    f.advance(900s);
    EXPECT_EQ(f.calls, (std::vector<std::string>{"record open", "window", "end 0"}));
    EXPECT_EQ(f.installed, 0);
    EXPECT_EQ(f.liveNodes() + f.liveDrivers(), 0U);

    Fixture early;
    early.delegate().willFinishLaunching();
    early.delegate().didFinishLaunching();
    early.delegate().quit();
    early.settle();
    early.relocated(RelocationOutcomes::Stay{});
    EXPECT_EQ(early.calls, (std::vector<std::string>{"links", "relocate", "end 0"}));
}

TEST(ChangeFeed, reportsSeveralChangesOnce) {
    FakeMachine f;
    std::vector<SwitchSnapshot> seen;
    std::optional<ChangeFeed> feed(std::in_place, f.sharedModel(), f.main.record(),
                                   [&](const AppState& state) { seen.push_back(state.switches); });
    for (const SwitchSnapshot switches : {SwitchSnapshot{true, false}, {true, true}, {false, true}}) {
        f.switches = switches;
        f.model().refreshSwitches();
    }
    EXPECT_TRUE(seen.empty());
    f.main.run();
    EXPECT_EQ(seen, (std::vector<SwitchSnapshot>{{false, true}}));
    f.switches = {true, true};
    f.model().refreshSwitches();
    feed.reset();
    f.main.run();
    EXPECT_EQ(seen.size(), 1U);
}

TEST(LoginItem, isRegisteredUnlessItIs) {
    int registered = 0;
    for (const bool isEnabled : {true, false})
        ensureLoginItem({[=] { return isEnabled; }, [&] { return ++registered < 0; }});
    EXPECT_EQ(registered, 1);
    ensureLoginItem({});  // a system without login items
}

}  // namespace
}  // namespace tarnik
