#include "app/model/LoginItem.h"

#include <gtest/gtest.h>

#include "app/model/WindowContent.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

using enum LoginItemState;
using Choice = LoginItemChoice;

// A system's list of login items, beside a model. `obeys` is false if a choice has no effect.
struct Fixture : FakeMachine {
    explicit Fixture(LoginItemState initial, bool obeys = true) : system(initial) {
        deps.platform.loginItem = {
            .state = [this] { return system; },
            .registerItem =
                [this] {
                    ++registrations;
                    system = on;
                    return true;
                },
            .choose = [this, obeys](Choice choice) -> std::expected<void, std::string> {
                chosen += choice == Choice::on ? "+" : "-";
                if (!obeys) return std::unexpected("no room\n");
                system = choice == Choice::on ? on : off;
                return {};
            },
            .openSettings = [this] { requests.emplace_back("settings"); }};
    }
    LoginItem& item() { return model().loginItem(); }
    WindowContent content() {
        return WindowContent::of(state(), {.webOrigin = Url::parse("https://tarnik.example").value()});
    }
    void click() { performIntent(content().startAtLogin.value().intent, "", model()); }

    LoginItemState system;
    int registrations = 0;
    std::string chosen;
};

TEST(LoginItem, isAddedAtLaunchUnlessItIsOnOrTheUserTurnedItOff) {
    struct Case {
        LoginItemState system;
        bool turnedOff;
        int registrations;
    };
    for (const auto& c : {Case{off, false, 1},
                          {on, false, 0},
                          {waiting, false, 1},
                          {off, true, 0},
                          {on, true, 0},
                          {waiting, true, 0}}) {
        Fixture f(c.system);
        if (c.turnedOff) f.flags.insert("StartAtLoginWasTurnedOff");
        f.item().ensureRegistered();
        EXPECT_EQ(f.state().startAtLogin, std::nullopt);
        f.settle();
        EXPECT_EQ(f.registrations, c.registrations);
        EXPECT_EQ(f.state().startAtLogin, f.system);
    }
}

TEST(LoginItem, followsTheOrganisationAtLaunch) {
    using enum PolicyStrength;
    const std::tuple<PolicySetting<bool>, LoginItemState, bool, std::string> cases[] = {
        // the setting, the list, whether the user turned it off, and what happens; "r" is a registration
        {{true, forced}, off, true, "+"},     {{true, forced}, waiting, false, ""},
        {{false, forced}, on, false, "-"},    {{false, forced}, off, false, ""},
        {{true, byDefault}, off, false, "r"}, {{true, byDefault}, off, true, ""},
        {{false, byDefault}, off, false, ""}, {{false, byDefault}, on, false, ""},
    };
    for (const auto& [setting, system, turnedOff, done] : cases) {
        Fixture f(system);
        f.policy.startAtLogin = setting;
        if (turnedOff) f.flags.insert("StartAtLoginWasTurnedOff");
        f.item().ensureRegistered();
        f.settle();
        EXPECT_EQ(f.chosen + (f.registrations > 0 ? "r" : ""), done);
        const auto before = f.chosen;
        f.click();
        f.settle();
        EXPECT_EQ(f.chosen == before, setting.isForced()) << "the user's choice";
        EXPECT_EQ(f.content().startAtLogin->enabled, !setting.isForced());
    }
    Fixture f(off, false);
    f.policy.startAtLogin = {true};
    f.item().ensureRegistered();
    f.settle();
    EXPECT_EQ(f.log.size(), 1U) << "a forced value that has no effect";
    EXPECT_FALSE(f.state().startAtLoginFailure);
}

TEST(LoginItem, remembersAndCarriesOutAChoice) {
    Fixture f(on);
    f.item().refresh();
    f.settle();
    f.click();
    f.item().ensureRegistered();
    f.settle();
    EXPECT_EQ(f.chosen, "-");
    f.item().ensureRegistered();
    f.settle();
    EXPECT_EQ(f.registrations, 0);
    f.click();
    f.item().choose(Choice::off);
    f.item().choose(Choice::on);  // these two wait for the first, and only the last one counts
    f.settle();
    EXPECT_EQ(f.chosen, "-++");
    EXPECT_EQ(f.state().startAtLogin, on);
    EXPECT_TRUE(f.flags.empty());
}

TEST(LoginItem, opensTheSettingsWhileTheSystemWaits) {
    Fixture f(waiting);
    f.item().refresh();
    f.settle();
    EXPECT_EQ(f.content().startAtLogin->state, WindowParts::CheckBox::State::waiting);
    f.click();
    f.settle();
    EXPECT_EQ(f.requests, std::vector<std::string>{"settings"});
    EXPECT_EQ(f.chosen, "");
}

TEST(LoginItem, showsAFailureUntilTheNextIntent) {
    for (const bool threadsAreLeft : {true, false}) {
        Fixture f(off, false);
        f.item().refresh();
        f.settle();
        f.threadsAreLeft = threadsAreLeft;
        f.click();
        if (threadsAreLeft) f.item().refresh();  // waits for the choice
        f.settle();
        EXPECT_EQ(f.state().startAtLogin, off);
        EXPECT_EQ(f.content().message.value().cause == "no room", threadsAreLeft);
        performIntent({.kind = UserIntent::Kind::dismissMessage}, "", f.model());
        EXPECT_FALSE(f.content().message);
    }
}

TEST(LoginItem, sharesThePlaceForMessagesWithTheLink) {
    Fixture f(off, false);
    f.install();
    f.model().start();
    f.item().refresh();
    f.settle();
    f.model().pairing().connect("no link");
    EXPECT_TRUE(f.content().linkField->refused);
    f.click();
    f.settle();
    EXPECT_TRUE(f.content().message && f.state().startAtLoginFailure);
    EXPECT_FALSE(f.content().linkField->refused);
    f.model().pairing().connect("no link");
    EXPECT_FALSE(f.state().startAtLoginFailure);
    EXPECT_TRUE(f.content().linkField->refused);
}

}  // namespace
}  // namespace tarnik
