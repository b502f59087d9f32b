#include "app/AppDelegate.h"

#include <map>

#include <gtest/gtest.h>

#include "app/Application.h"
#include "app/model/ChangeFeed.h"
#include "app/texts/LinkTexts.h"
#include "core/foundation/TarnikIdentity.h"
#include "tests/support/FakeMachine.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

// A delegate that records every call to the outside in order.
struct Fixture : FakeMachine {
    std::string calls;
    std::function<void(RelocationOutcome)> relocated;
    std::function<void(const std::string&)> openLink;
    std::function<void()> secondOpen;
    std::function<void()> becomeActive;
    std::function<bool(const std::string&, UpdateFramework::Install)> updateIsReady;
    UpdateSettings updates;
    std::optional<std::string> bundlePath;
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
    void call(const std::string& name) { calls += name + ", "; }
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
            return {[] { return std::expected<void, std::string>(); }, [](bool) {}, [](bool) {},
                    calling("check for updates"), [] {}};
        };
        return {.framework = {.makeController = make},
                .mainThread = main.record(),
                .log = [](const std::string&) {},
                .now = [this] { return clock->now(); }};
    }
    // Performs the events of a fake machine, and those of its user and of the launch.
    void perform(const std::string& events) {
        static const std::map<std::string, void (*)(Fixture&)> actions{
            {"installed", [](auto& f) { f.install(); }},
            {"on", [](auto& f) { f.switches = {true, true}; }},
            {"off", [](auto& f) { f.switches = {}; }},
            {"updates", [](auto& f) { f.updates = {.feedURL = "https://feed.example", .publicKey = "key"}; }},
            {"at-place", [](auto& f) { f.bundlePath = TarnikIdentity::installPath; }},
            {"elsewhere", [](auto& f) { f.bundlePath = "/Users/me/Downloads/tarnik.app"; }},
            {"shows", [](auto& f) { f.showsWindow = true; }},
            {"used", [](auto& f) { f.inUse = "in use"; }},
            {"homeless", [](auto& f) { f.texts["NodeHome"] = "not/absolute"; }},
            {"will", [](auto& f) { f.delegate().willFinishLaunching(); }},
            {"did", [](auto& f) { f.delegate().didFinishLaunching(); }},
            {"stay", [](auto& f) { f.relocated(RelocationOutcomes::Stay{}); }},
            {"moving", [](auto& f) { f.relocated(RelocationOutcomes::Moving{}); }},
            {"message",
             [](auto& f) { f.relocated(RelocationOutcomes::StayWithMessage{"Move tarnik", "…"}); }},
            {"open:a", [](auto& f) { f.openLink(link('a')); }},
            {"open:b", [](auto& f) { f.openLink(link('b')); }},
            {"second", [](auto& f) { f.secondOpen(); }},
            {"reopen", [](auto& f) { f.delegate().reopen(); }},
            {"window", [](auto& f) { f.delegate().openWindow(); }},
            {"close", [](auto& f) { f.delegate().windowClosed(); }},
            {"check", [](auto& f) { f.delegate().checkForUpdates(); }},
            {"update", [](auto& f) { f.updateIsReady("2", f.calling("install")); }},
            {"quit", [](auto& f) { f.delegate().quit(); }},
            {"clear", [](auto& f) { f.calls.clear(); }},
        };
        for (const auto& event : words(events)) {
            const auto own = actions.find(event);
            own != actions.end() ? own->second(*this) : act(event);
        }
    }
};

TEST(AppDelegate, performsItsStepsInOrder) {
    const std::string launch = "will did stay ", begins = "links, relocate, take home, ";
    const std::string menu = begins + "updater, menu of 3, ", open = "record open, window, ";
    const std::string inUse = "updates installed join on " + launch + "settle update ";
    const std::tuple<std::string, std::string, bool> cases[] = {
        // the events, the calls, and whether the model starts
        {"at-place updates will did message",
         begins + "login item, updater, menu of 4, " + open + "alert Move tarnik, ", true},
        {"elsewhere installed join on " + launch + "settle", menu, true},
        // The relocator waits for the user. The installed copy never waits.
        {"elsewhere installed join on will did +3 stay settle", begins.substr(0, 17) + open + menu.substr(17),
         true},
        {"at-place installed join on will did +3 stay settle", begins + "login item, updater, menu of 3, ",
         true},
        {launch + "clear second reopen window", "record secondOpen, window, record reopen, window, " + open,
         true},
        {"on " + launch, menu, true},
        {"on " + launch + "settle", menu + open, true},  // the install has failed
        {"installed on " + launch, menu, true},
        {"installed on " + launch + "settle", menu + open, true},  // the node waits for a link
        {"installed on " + launch + "settle close off +10", menu + open, true},
        {"installed on shows " + launch + "settle", menu + open, true},
        {"used " + launch + "open:a settle", begins + "refuse: in use, end 5, ", false},
        {"homeless on " + launch, menu + open, false},
        {"will open:b did moving open:a settle", "links, " + open + "relocate, end 0, ", false},
        {"updates installed join on check " + launch + "settle clear check", "check for updates, ", true},
        {inUse + "clear +720", "install, ", true},
        {inUse + "clear quit quit open:a window +900", open + "end 0, ", true},
        {"will did quit settle stay", "links, relocate, end 0, ", false},
    };
    for (const auto& [events, calls, started] : cases) {
        Fixture f;
        f.perform(events);
        EXPECT_EQ(f.calls, calls) << events;
        EXPECT_EQ(f.model().hasStarted(), started) << events;
        EXPECT_FALSE(events.contains("quit") && f.liveNodes() + f.liveDrivers() > 0) << events;
        EXPECT_TRUE(f.state().switches.allOn() || !events.starts_with("homeless")) << events;
    }
}

TEST(AppDelegate, readsTheSwitchesWhenItBecomesActive) {
    Fixture f;
    f.perform("installed join on will did stay settle off");
    f.becomeActive();
    EXPECT_FALSE(f.state().switches.accessibility);
}

TEST(AppDelegate, fillsTheLinkFieldWithALinkThatIsTooEarly) {
    Fixture f;
    f.deps.installer.fetch = [&](const std::string&) -> std::expected<std::string, InstallError> {
        f.install();
        return std::unexpected(InstallFailure{InstallFailure::Kind::download, "stable.json"});
    };
    f.releaseBase = "https://release.example";
    f.perform("will did stay open:a");
    EXPECT_EQ(f.state().linkMessage, LinkTexts::stillInstalling);
    EXPECT_EQ(f.field, FakeMachine::link());
    f.settle();
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the install has ended";
    f.perform("open:b settle");
    EXPECT_EQ(f.state().linkMessage, LinkTexts::linkExpired);
    EXPECT_EQ(f.field, FakeMachine::link());
    f.perform("close");
    EXPECT_EQ(f.state().linkMessage, std::nullopt);
}

TEST(AppDelegate, handsItsLinkToTheCopyThatReplacesIt) {
    Fixture f;
    f.perform("will open:b did moving");
    EXPECT_EQ(f.handedOn, FakeMachine::link('b'));
    f.perform("open:a");  // while it ends

    Fixture other;
    other.handed = f.handedOn;
    other.goodLinks = {FakeMachine::code('a')};
    other.perform("installed will did stay settle");
    EXPECT_EQ(other.terminals.count(), 1U) << "with the handed link";
}

TEST(AppDelegate, keepsTheLatestLinkUntilTheModelAcceptsLinks) {
    Fixture f;
    f.leaveAgent();
    f.goodLinks = {FakeMachine::code('a'), FakeMachine::code('b')};
    f.perform("installed will");
    f.openLink("not a link");
    EXPECT_EQ(f.calls, "links, ");
    f.perform("open:a did stay open:b");
    EXPECT_EQ(f.state().linkMessage, std::nullopt) << "the link waits for the end of the agent";
    EXPECT_EQ(f.startsToTakeLinks, 0);
    f.perform("settle clear");
    EXPECT_EQ(f.startsToTakeLinks, 1);
    ASSERT_EQ(f.terminals.count(), 1U);
    EXPECT_TRUE(f.terminals.last().request().arguments.back().ends_with("/c/" + FakeMachine::code('b')));
    f.perform("open:a");
    EXPECT_TRUE(f.calls.contains("window")) << "even if the model refuses the link";
    EXPECT_EQ(f.terminals.count(), 1U);
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

}  // namespace
}  // namespace tarnik
