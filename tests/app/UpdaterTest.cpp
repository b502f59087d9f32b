#include "app/updates/Updater.h"

#include <gtest/gtest.h>

#include "tests/support/ManualMainThread.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

const std::string ready = "update 1.2 is ready; installing at the first quiet moment";
const std::string quiet = "quiet for 600 s: installing the update and relaunching";
const std::string byMenu = "Check for Updates… with an update waiting: installing it now";

// An updater with a stand-in for the framework and a source of samples, both with a memory.
struct Fixture {
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    ManualMainThread main{clock};
    bool busy = false;
    bool slow = false;  // samples wait for tell()
    std::vector<std::function<void()>> untold;
    int looks = 0;
    UpdateFramework::WillInstallOnQuit willInstall;
    Words said;  // by the log, and what was asked of the framework
    std::unique_ptr<Updater> updater;

    explicit Fixture(const UpdateSettings& settings = {"https://feed/", "key"}) {
        const auto says = [this](const char* word) { return [this, word] { said.emplace_back(word); }; };
        const auto make = [this, says](auto handler) -> UpdateFramework::Controller {
            willInstall = handler;
            return {says("start"), says("checks"), says("downloads"), says("check")};
        };
        updater = std::make_unique<Updater>(
            settings, Updater::Deps{.framework = {.makeController = make},
                                    .mainThread = main.record(),
                                    .log = [this](const auto& line) { said.push_back(line); },
                                    .now = [this] { return clock->now(); }});
        updater->setSampleSource([this](auto done) {
            ++looks;
            const ActivitySample sample{.at = {clock->now(), {}}, .nodeHoldsAwake = busy};
            untold.emplace_back([done, sample] { done(sample); });
            if (!slow) tell();
        });
    }

    void tell() {
        for (const auto& sample : std::exchange(untold, {})) sample();
    }
    bool announce(const std::string& name = "install") {
        return willInstall("1.2", [this, name] { said.push_back(name); });
    }
    // What was said since this was asked last.
    Words heard() { return std::exchange(said, {}); }
};

TEST(Updater, staysInertUnlessWhollySetUp) {
    for (const auto& settings : {UpdateSettings{"https://feed/", {}}, UpdateSettings{{}, "key"}}) {
        Fixture f(settings);
        EXPECT_FALSE(f.updater->isAvailable());
        f.main.advance(1h);
        f.updater->checkForUpdates();
        f.updater->appWillQuit();
        EXPECT_EQ(f.heard(), Words{});
        EXPECT_EQ(f.looks, 0);
    }
    EXPECT_FALSE(Updater({"https://feed/", "key"}, {}).isAvailable()) << "a system without a framework";
}

TEST(Updater, looksEveryMinuteAndChecksWhenAsked) {
    Fixture f;
    EXPECT_TRUE(f.updater->isAvailable());
    f.updater->checkForUpdates();
    f.main.advance(1h);
    EXPECT_EQ(f.looks, 60);
    EXPECT_EQ(f.heard(), (Words{"start", "checks", "downloads", "check"}));

    f.busy = true;
    f.announce();
    f.main.advance(1h);
    f.updater->checkForUpdates();
    f.updater->checkForUpdates();
    EXPECT_EQ(f.heard(), (Words{ready, byMenu, "install", "check"}));
}

TEST(Updater, installsAfterTenMinutesWithoutWork) {
    Fixture f;
    f.main.advance(30min);
    f.heard();
    f.announce("an old one");
    EXPECT_TRUE(f.announce());
    f.main.advance(659s);
    EXPECT_EQ(f.heard(), (Words{ready, ready})) << "the quiet before it was ready doesn't count";
    f.busy = true;
    f.main.advance(60s);
    f.busy = false;
    f.main.advance(540s);
    EXPECT_EQ(f.heard(), Words{});
    f.main.advance(1h);
    EXPECT_EQ(f.heard(), (Words{quiet, "install"}));

    f.updater->setSampleSource(nullptr);
    f.announce();
    f.main.advance(1h);
    EXPECT_EQ(f.heard(), Words{ready}) << "nobody knows whether it is quiet";
}

TEST(Updater, leavesItToTheFrameworkAtTheEnd) {
    Fixture f;
    f.announce();
    f.main.advance(610s);
    f.slow = true;
    f.main.advance(60s);
    f.heard();
    f.updater->appWillQuit();
    EXPECT_EQ(f.heard(), Words{"quitting with an update ready: it installs as the app quits"});
    f.tell();
    f.main.advance(1h);
    f.updater->checkForUpdates();
    f.updater->appWillQuit();
    EXPECT_TRUE(f.announce());
    EXPECT_EQ(f.heard(), Words{ready}) << "but not installed from here";
    EXPECT_EQ(f.looks, 11);
}

TEST(Updater, asksAgainWhenASampleIsLost) {
    Fixture f;
    f.announce();
    f.main.advance(5min);
    f.slow = true;
    f.main.advance(5min);
    EXPECT_EQ(f.looks, 6) << "one at a time";
    f.main.advance(1min);
    EXPECT_EQ(f.looks, 7);
    f.slow = false;
    f.tell();  // one too late, and one with which the stretch begins
    f.main.advance(9min);
    EXPECT_EQ(f.heard().back(), ready);
    f.main.advance(1min);
    EXPECT_EQ(f.heard(), (Words{quiet, "install"}));
}

TEST(Updater, isGoneForWhatAnswersLater) {
    Fixture f;
    f.slow = true;
    f.main.advance(1min);
    f.heard();
    f.willInstall("1.2", [&f] { f.updater.reset(); });
    f.updater->checkForUpdates();
    f.tell();
    EXPECT_FALSE(f.announce());
    f.main.advance(1h);
    EXPECT_EQ(f.heard(), (Words{ready, byMenu}));
}

}  // namespace
}  // namespace tarnik
