#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include "app/texts/ProgramTexts.h"
#include "tests/support/Words.h"

namespace tarnik {
namespace {

using Task = CommandLine::Task;
using enum CommandLine::Build;

TEST(CommandLine, parsesOptionsAndOneLink) {
    const std::pair<const char*, CommandLine> cases[] = {
        {"", {}},
        {"--console --switches on --driver-output LINK",
         {.task = Task::runConsole, .link = "LINK", .switchesOn = true, .driverOutput = true}},
        {"--switches on --switches off", {}},
        {"--at-login --node-home /n --connected-after 0.5",
         {.nodeHome = "/n", .connectedAfter = Seconds(0.5), .atLogin = true}},
        {"--bundle /b --keep-awake /k --link --console",
         {.link = "--console", .bundle = "/b", .keepAwake = "/k"}},
        {"--show-screen NAME --dark", {.task = Task::showScreen, .screen = "NAME", .dark = true}},
        {"--tarnik-relocation-relaunch --connected-after 3600", {.connectedAfter = Seconds(3600)}},
    };
    for (const auto& [line, expected] : cases) {
        const auto parsed = CommandLine::parse(words(line), development);
        ASSERT_TRUE(parsed) << parsed.error();
        EXPECT_EQ(*parsed, expected) << line;
    }
}

TEST(CommandLine, namesTheFaultyArgument) {
    const std::pair<const char*, const char*> cases[] = {
        {"--nothing", "unknown argument --nothing (--help lists them)"},
        {"--link", "--link needs a value after it"},
        {"a b", "one link at a time, not also b"},
        {"--bundle /b", "unknown argument --bundle (--help lists them)"},
        {"--switches maybe", "--switches takes on or off, not maybe"},
        {"--connected-after 3601", "--connected-after takes seconds, up to 3600, not 3601"},
        {"--connected-after 0", "--connected-after takes seconds, up to 3600, not 0"},
        {"--connected-after 1s", "--connected-after takes seconds, up to 3600, not 1s"},
    };
    for (const auto& [line, error] : cases) {
        const auto parsed = CommandLine::parse(words(line), release);
        EXPECT_EQ(parsed ? "" : parsed.error(), error);
    }
}

TEST(CommandLine, explainsEveryOptionOfTheBuild) {
    for (const char* option : {"--bundle", "--keep-awake"}) {
        EXPECT_TRUE(ProgramTexts::usage(development).contains(option));
        EXPECT_FALSE(ProgramTexts::usage(release).contains(option));
    }
}

}  // namespace
}  // namespace tarnik
