#include "app/model/AttentionWatch.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ManualMainThread.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

using enum TrayStatus;
using Closing = WindowSetting::Closing;

AppState ready(NodeState node) {
    AppState state;
    state.setup = Setups::Ready{};
    state.node = node;
    state.joined = true;
    return state;
}

AppState failed() {
    AppState state;
    state.setup = Setups::Failed{"no network"};
    return state;
}

const AppState running = ready(NodeStates::Running{});
const AppState away = ready(NodeStates::Restarting{Seconds(4)});

AppState changed(AppState state, void (*edit)(AppState&)) {
    edit(state);
    return state;
}

TEST(TrayStatus, dependsOnWhoCanAct) {
    const std::tuple<const char*, AppState, TrayStatus> cases[] = {
        {"the install", {}, working},
        {"a failed install", failed(), needsYou},
        {"no folder", changed({}, [](auto& state) { state.homeError = "no folder"; }), needsYou},
        {"no helper", ready(NodeStates::NotInstalled{}), needsYou},
        {"another try without a helper",
         changed(ready(NodeStates::NotInstalled{}), [](auto& state) { state.setup = Setups::Installing{}; }),
         working},
        {"no account", changed(ready(NodeStates::WaitingForLink{}), [](auto& s) { s.joined = false; }),
         needsYou},
        {"the check of a link",
         changed(ready(NodeStates::WaitingForLink{}), [](auto& s) { s.checkingLink = true; }), working},
        {"before the first report", ready(NodeStates::Stopped{}), working},
        {"both switches off", running, connected},
        {"a restart", away, working},
        {"the end", changed(failed(), [](auto& state) { state.stopping = true; }), working},
    };
    for (const auto& [why, state, status] : cases)
        EXPECT_EQ(trayStatus(state, AbsenceLength::brief), status) << why;
}

// Records the notices and the numbers of the statuses.
struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    AppState state = running;
    bool isOpen = false;
    bool isInUse = false;
    bool hasService = true;
    std::set<std::string> flags;
    std::vector<std::string> events;
    AttentionWatch watch{
        {.mainThread = main.record(),
         .notices = {.canShow = [this] { return hasService; },
                     .show = [this](const std::string& id,
                                    const UserNotice&) { events.push_back("show " + id); },
                     .withdraw = [this](const std::string& id) { events.push_back("withdraw " + id); },
                     .onClick = {}},
         .defaults = {.text = {},
                      .flag = [this](const std::string& key) { return flags.contains(key); },
                      .setFlag = [this](const std::string& key) { flags.insert(key); }},
         .state = [this]() -> const AppState& { return state; },
         .windowIsOpen = [this] { return isOpen; },
         .windowIsInUse = [this] { return isInUse; },
         .onStatus =
             [this](TrayStatus status) { events.push_back(std::to_string(static_cast<int>(status))); },
         .now = [this] { return clock->now(); }}};

    // Returns the events since the last call.
    std::vector<std::string> seen() { return std::exchange(events, {}); }
    std::vector<std::string> becomes(const AppState& next) {
        state = next;
        watch.stateChanged();
        main.run();
        return seen();
    }
    std::vector<std::string> after(Seconds time) {
        main.advance(time);
        return seen();
    }
};

using Events = std::vector<std::string>;
const std::string isConnected = "0", works = "1", needs = "2";

TEST(AttentionWatch, reportsAnAbsenceOfFiveMinutesOnce) {
    Fixture f;
    EXPECT_EQ(f.becomes(away), Events({works}));
    EXPECT_EQ(f.after(299s), Events());
    EXPECT_EQ(f.after(1s), Events({needs, "show problem"}));
    EXPECT_EQ(f.after(1h), Events());
    EXPECT_EQ(f.becomes(running), Events());
    EXPECT_EQ(f.after(59s), Events());
    EXPECT_EQ(f.after(1s), Events({isConnected, "withdraw problem"}));
}

TEST(AttentionWatch, countsAcrossShortRuns) {
    Fixture f;
    f.becomes(away);
    f.after(250s);
    EXPECT_EQ(f.becomes(running), Events({isConnected}));
    EXPECT_EQ(f.after(55s), Events());  // the five minutes pass during the run
    EXPECT_EQ(f.becomes(away), Events({needs, "show problem"}));
    EXPECT_EQ(f.becomes(running), Events());
    f.after(30s);
    EXPECT_EQ(f.becomes(away), Events());
    f.becomes(running);
    EXPECT_EQ(f.after(60s), Events({isConnected, "withdraw problem"}));
    f.becomes(away);
    EXPECT_EQ(f.after(299s), Events());
    EXPECT_EQ(f.becomes(changed(away, [](auto& state) { state.checkingLink = true; })), Events());
    f.becomes(away);
    EXPECT_EQ(f.after(299s), Events());  // a pairing starts the count again
}

TEST(AttentionWatch, showsAProblemOnlyIfTheWindowIsClosed) {
    Fixture f;
    f.isOpen = true;
    EXPECT_EQ(f.becomes(failed()), Events({needs}));
    f.isOpen = false;
    EXPECT_EQ(f.becomes(failed()), Events());
    EXPECT_EQ(f.becomes({}), Events({works, "withdraw problem"}));
    EXPECT_EQ(f.becomes(failed()), Events({needs, "show problem"}));
    f.watch.windowSeen();
    EXPECT_EQ(f.seen(), Events({"withdraw problem", "withdraw window-closed"}));

    f.becomes({});
    f.state = failed();
    f.watch.stateChanged();
    f.isOpen = true;  // the same change opens the window
    f.main.run();
    EXPECT_EQ(f.seen(), Events({needs}));
}

TEST(AttentionWatch, showsAnAbsenceUnlessTheWindowIsInUse) {
    for (const bool isInUse : {false, true}) {
        Fixture f;
        f.isOpen = true;  // other windows may cover it
        f.isInUse = isInUse;
        f.becomes(away);
        EXPECT_EQ(f.after(300s), isInUse ? Events({needs}) : Events({needs, "show problem"}));
    }
}

TEST(AttentionWatch, explainsTheFirstCloseOnce) {
    Fixture f;
    f.watch.windowClosed(Closing::endsConnection);
    f.watch.windowClosed(Closing::unknown);
    f.hasService = false;
    f.watch.windowClosed(Closing::staysInPanel);
    f.hasService = true;
    EXPECT_EQ(f.seen(), Events());
    f.watch.windowClosed(Closing::staysInPanel);
    f.watch.windowClosed(Closing::staysInPanel);
    EXPECT_EQ(f.seen(), Events({"show window-closed"}));
    EXPECT_EQ(f.becomes(changed(running, [](auto& state) { state.stopping = true; })),
              Events({works, "withdraw window-closed"}));
}

}  // namespace
}  // namespace tarnik
