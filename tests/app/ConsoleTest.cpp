#include "app/console/Console.h"

#include <gtest/gtest.h>

#include "app/console/DriverOutput.h"
#include "app/texts/ConsoleTexts.h"
#include "app/texts/LinkTexts.h"
#include "core/foundation/Files.h"
#include "tests/support/Eventually.h"
#include "tests/support/FakeMachine.h"

namespace tarnik {
namespace {

// A console on a fake machine.
struct Fixture : FakeMachine {
    ConsoleOutput output;
    SimulatedSwitches simulated{output, {}};
    std::optional<Console> console;
    std::optional<AppDelegate> delegate;
    bool inputOpen = true;
    bool showsNews = false;  // printed() returns the news of the window as well
    std::vector<int> ended;  // the exit statuses

    explicit Fixture(const std::string& startLink = "") {
        deps.platform.switches = simulated.operations();
        console.emplace(main.record(), output, simulated, sharedModel(), [this] { inputOpen = false; });
        delegate.emplace(
            AppDelegateDeps{
                .relocateIfNeeded = [](auto done) { done(RelocationOutcomes::Stay{}); },
                .recordWindow = [](const std::string&) {},
                .takeHandedLink = [] { return std::nullopt; },
                .takeNodeHome = [](auto done) { done(std::nullopt); },
                .makeUpdater = [] { return std::make_unique<Updater>(UpdateSettings{}, Updater::Deps{}); },
                .mainThread = main.record(),
                .presentation = console->presentation([this] { ended.push_back(console->exitStatus()); }),
                .events = {[](const auto&) {}, [](const auto&) {}, [](const auto&) {}, [](const auto&) {}}},
            sharedModel());
        console->attach(*delegate);
        if (!startLink.empty()) console->pairWhenReady(startLink);
    }

    // Returns what the console prints meanwhile, without the times.
    std::string printed(const std::function<void()>& act) {
        testing::internal::CaptureStdout();
        act();
        settle();
        std::istringstream lines(testing::internal::GetCapturedStdout());
        std::string text;
        for (std::string line; std::getline(lines, line);) {
            line.erase(0, 13);
            if (showsNews || !line.starts_with("window ")) text += line + "\n";
        }
        return text;
    }
    std::string type(const std::string& line) {
        return printed([&] { console->onLine(line); });
    }
    void launch() {
        printed([&] { delegate->didFinishLaunching(); });
    }
};

TEST(Console, carriesOutWhatIsTyped) {
    Fixture f;
    f.install();
    f.launch();
    const std::string home = f.texts["NodeHome"];
    const auto error = [](std::string_view text) { return "error " + std::string(text) + "\n"; };
    const std::pair<const char*, std::string> cases[] = {
        {"", ""},
        {"confirm", error(ConsoleTexts::nothingToConfirm)},
        {"cancel", error(ConsoleTexts::noPairing)},
        {"replace", error(ConsoleTexts::noOffer)},
        {"stats", error("unknown command stats (help lists them)")},
        {"twenty characters or", error(LinkTexts::notALink)},
        {"twenty characters or", error(LinkTexts::notALink)},  // an unchanged state is printed again
        {"x://", error(LinkTexts::notALink)},
        {"request screen",
         "prompt Screen Recording\nsettings " + std::string(settingsURL(Switch::screenRecording)) + "\n"},
        {"switch screen", error(ConsoleTexts::switchUsage)},
        {"switch screen on", "switches accessibility=off screenRecording=on\n"},
        {"status",
         "status state=waitingForLink pid=none pairing=none restarts=0 driver=none "
         "driverRestarts=0 switches=accessibility:off,screen:on endpoint=none home=" +
             home + "\n"},
        {"sample",
         "sample at=3600 nodePID=none nodeHoldsAwake=no holders=0 driverPID=none "
         "driverCPUSeconds=unknown settingUp=no windowInUse=no\n"},
    };
    for (const auto& [line, output] : cases) EXPECT_EQ(f.type(line), output) << line;
    EXPECT_EQ(f.type("quit"), "state stopped\n");
    EXPECT_FALSE(f.inputOpen);
    EXPECT_EQ(f.ended, std::vector<int>{0});
}

TEST(Console, offersToReplaceTheAccount) {
    Fixture f;
    f.install();
    f.join();
    f.launch();
    f.goodLinks = {FakeMachine::code('a')};
    EXPECT_TRUE(f.type(FakeMachine::link()).contains("offer This Mac is already connected"));
    EXPECT_EQ(f.type("keep"), "");
    EXPECT_TRUE(f.type("replace").starts_with("error "));
    EXPECT_EQ(f.terminals.count(), 0U);
}

TEST(Console, endsWithAStatus) {
    Fixture refused(FakeMachine::link());
    refused.install();
    refused.launch();
    EXPECT_EQ(refused.ended, std::vector<int>{1});

    Fixture failing;
    failing.launch();
    EXPECT_EQ(failing.ended, std::vector<int>{1});

    Fixture f;
    f.install();
    f.printed([&] {
        f.delegate->didFinishLaunching();
        f.console->onEndOfInput();
        EXPECT_TRUE(f.inputOpen) << "the install is still in progress";
    });
    EXPECT_EQ(f.ended, std::vector<int>{0});
}

TEST(Console, printsTheLinesOfTheDriver) {
    Fixture f;
    const UniqueFd pipe = attachDriverOutput(f.main.record(), f.output);
    const std::string_view output = "one\ntwo\a\r\nthree";
    ASSERT_EQ(writeAll(pipe.get(), output), output.size());
    std::string text;
    EXPECT_TRUE(eventually([&] {
        text += f.printed([] {});
        return text.contains("two");
    }));
    EXPECT_EQ(text, "driver one\ndriver two\n");
}

TEST(Console, printsTheWindowAsText) {
    Fixture f;
    f.install();
    f.launch();
    f.showsNews = true;
    const auto window = f.type("window");
    EXPECT_TRUE(window.starts_with("window Connect this Mac\n")) << window;
    EXPECT_TRUE(window.contains("window <https://tarnik.example/c/…>\nwindow [Continue]\n")) << window;
    EXPECT_TRUE(window.contains("\nwindow ( ) Screen Recording: ")) << window;
    EXPECT_EQ(f.type("switch screen on"),
              "switches accessibility=off screenRecording=on\nwindow Screen Recording is on\n");
}

}  // namespace
}  // namespace tarnik
