#include "app/updates/Updater.h"

#include <map>

#include <gtest/gtest.h>

#include "tests/support/ManualMainThread.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

const std::map<std::string, std::string> lines{
    {"update 1.2 is ready; installing at the first quiet moment", "ready"},
    {"quiet for 600 s: installing the update and relaunching", "quiet"},
    {"Check for Updates… with an update waiting: installing it now", "by menu"},
    {"quitting with an update ready: it installs as the app quits", "at quit"},
    {"no updates: no key", "failed"}};

// An updater with a fake framework and a fake source of samples.
struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    bool busy = false;
    int hour = 0;
    bool slow = false;    // samples wait for deliver()
    bool broken = false;  // the framework can't start
    std::vector<std::function<void()>> undelivered;
    int looks = 0;
    UpdateFramework::WillInstallOnQuit willInstall;
    std::string calls;  // log lines, and calls of the framework
    std::unique_ptr<Updater> updater;

    explicit Fixture(const UpdateSettings& settings = {"https://feed/", "key"},
                     const std::optional<PolicySetting<UpdateRule>>& rule = {}, bool brokenAtFirst = false)
        : broken(brokenAtFirst) {
        const auto records = [this](const std::string& word) {
            return [this, word] { calls += word + ", "; };
        };
        const auto make = [this, records](auto handler) -> UpdateFramework::Controller {
            willInstall = handler;
            const auto start = [this]() -> std::expected<void, std::string> {
                calls += "start, ";
                if (broken) return std::unexpected("no key");
                return {};
            };
            const auto notes = [this](const std::string& word) {
                return [this, word](bool isOn) { calls += (isOn ? "" : "no ") + word + ", "; };
            };
            return {start, notes("checks"), notes("downloads"), records("check"), records("alert")};
        };
        const auto log = [this](const auto& line) { calls += lines.at(line) + ", "; };
        const auto now = [this] { return clock->now(); };
        updater = std::make_unique<Updater>(
            settings, Updater::Deps{{make}, main.record(), log, now, [this] { return hour; }, rule});
        updater->setSampleSource([this](auto done) {
            ++looks;
            const ActivitySample sample{.at = {clock->now(), {}}, .nodeHoldsAwake = busy};
            undelivered.emplace_back([done, sample] { done(sample); });
            if (!slow) deliver();
        });
    }

    void deliver() {
        for (const auto& sample : std::exchange(undelivered, {})) sample();
    }
    // "+5" advances five minutes.
    void act(const std::string& event) {
        static const std::map<std::string, void (*)(Fixture&)> actions{
            {"update", [](auto& f) { f.willInstall("1.2", [&f] { f.calls += "install, "; }); }},
            {"menu", [](auto& f) { f.updater->checkForUpdates(); }},
            {"quit", [](auto& f) { f.updater->appWillQuit(); }},
            {"mend", [](auto& f) { f.broken = false; }},
            {"busy", [](auto& f) { f.busy = true; }},
            {"idle", [](auto& f) { f.busy = false; }},
            {"slow", [](auto& f) { f.slow = true; }},
            {"fast", [](auto& f) { f.slow = false; }},
            {"deliver", [](auto& f) { f.deliver(); }},
            {"without-samples", [](auto& f) { f.updater->setSampleSource(nullptr); }},
        };
        if (event.starts_with('+')) return main.advance(Seconds(60 * std::stod(event)));
        actions.at(event)(*this);
    }
};

TEST(Updater, doesNothingWithoutCompleteSettings) {
    for (const auto& settings : {UpdateSettings{"https://feed/", {}}, UpdateSettings{{}, "key"}}) {
        Fixture f(settings);
        EXPECT_FALSE(f.updater->isAvailable());
        for (const char* event : {"+60", "menu", "quit"}) f.act(event);
        EXPECT_EQ(f.calls, "");
        EXPECT_EQ(f.looks, 0);
    }
    EXPECT_FALSE(Updater({"https://feed/", "key"}, {}).isAvailable()) << "a system without a framework";
}

TEST(Updater, installsAtAQuietMoment) {
    const std::tuple<std::string, std::string, int> cases[] = {
        // the events, the calls, and the number of samples
        {"menu +60", "check, ", 60},
        {"busy update +60 menu menu", "ready, by menu, install, check, ", 60},
        {"+30 update +10", "ready, ", 40},  // earlier quiet time doesn't count
        {"+30 update +11", "ready, quiet, install, ", 41},
        {"update +5 busy +1 idle +9", "ready, ", 15},
        {"update +5 busy +1 idle +10", "ready, quiet, install, ", 16},
        {"+30 without-samples update +60", "ready, ", 30},
        {"update +5 slow +5", "ready, ", 6},  // one sample at a time
        {"update +5 slow +6", "ready, ", 7},  // the first one is lost
        {"update +5 slow +6 fast deliver +9", "ready, ", 16},
        {"update +5 slow +6 fast deliver +10", "ready, quiet, install, ", 17},
        {"update +10 slow +1 quit deliver +60 menu quit update", "ready, at quit, ready, ", 11},
    };
    for (const auto& [events, calls, looks] : cases) {
        Fixture f;
        EXPECT_TRUE(f.updater->isAvailable());
        for (const auto& event : words(events)) f.act(event);
        EXPECT_EQ(f.calls, "start, checks, downloads, " + calls) << events;
        EXPECT_EQ(f.looks, looks) << events;
    }
}

TEST(Updater, startsTheFrameworkAgainFromTheMenu) {
    Fixture f({"https://feed/", "key"}, {}, true);
    for (const char* event : {"+60", "menu", "mend", "menu", "menu"}) f.act(event);
    EXPECT_EQ(f.calls, "start, failed, checks, downloads, start, failed, alert, start, check, check, ");
}

TEST(Updater, followsTheRuleOfTheOrganisation) {
    using enum PolicyStrength;
    const std::tuple<const char*, PolicyStrength, int, bool, std::string> cases[] = {
        // the rule, the hour, whether the menu offers a check, and the calls
        {"never", forced, 12, false, ""},
        {"never", byDefault, 12, true, "start, no checks, no downloads, ready, "},
        {"22-6", forced, 12, false, "start, checks, downloads, ready, "},
        {"22-6", forced, 5, false, "start, checks, downloads, ready, quiet, install, "},
        {"22-6", byDefault, 22, true, "start, checks, downloads, ready, quiet, install, "},
        {"9-17", forced, 17, false, "start, checks, downloads, ready, "},
        {"always", forced, 12, true, "start, checks, downloads, ready, quiet, install, "},
    };
    for (const auto& [rule, strength, hour, offers, calls] : cases) {
        Fixture f({"https://feed/", "key"},
                  PolicySetting<UpdateRule>{UpdateRule::parse(rule).value(), strength});
        f.hour = hour;
        EXPECT_EQ(f.updater->offersCheck(), offers) << rule;
        if (f.updater->isAvailable()) f.act("update");
        f.act("+11");
        EXPECT_EQ(f.calls, calls) << rule;
        if (!offers) f.act("menu");
        EXPECT_EQ(f.calls, calls) << rule;
    }
    Fixture f({"https://feed/", "key"}, PolicySetting<UpdateRule>{UpdateRule::parse("22-6").value()});
    f.hour = 21;
    for (const char* event : {"update", "+10"}) f.act(event);
    f.hour = 22;
    f.act("+1");  // the quiet time before the window counts
    EXPECT_TRUE(f.calls.ends_with("install, ")) << f.calls;
}

TEST(Updater, ignoresAnswersAfterItsEnd) {
    Fixture f;
    for (const char* event : {"slow", "+1"}) f.act(event);
    f.willInstall("1.2", [&f] { f.updater.reset(); });
    f.updater->checkForUpdates();
    f.deliver();
    EXPECT_FALSE(f.willInstall("1.2", [] {}));
    f.main.advance(1h);
    EXPECT_EQ(f.calls, "start, checks, downloads, ready, by menu, ");
}

}  // namespace
}  // namespace tarnik
