#include "app/options/CommandLine.h"

#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "app/commands/CommandHelp.h"
#include "app/commands/CommandTable.h"
#include "app/commands/HeavyCommands.h"
#include "core/process/Spawner.h"
#include "tests/support/Words.h"

namespace tarnik {

using Task = CommandLine::Task;
using enum CommandLine::Build;

TEST(CommandLine, parsesOptionsAndOneLink) {
    const std::pair<const char*, CommandLine> cases[] = {
        {"", {}},
        {"--console tarnik://connect --switches=on --driver-output",
         {.task = Task::runConsole, .link = "tarnik://connect", .switchesOn = true, .driverOutput = true}},
        {"--switches on --switches off", {}},
        {"--cons -- -a-code-that-has-22-signs",
         {.task = Task::runConsole, .link = "-a-code-that-has-22-signs"}},
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
        {"--consle", "unknown option --consle; did you mean --console?"},
        {"-x", "unknown option -x"},
        {"--link", "--link needs a value"},
        {"--link=", "--link needs a value"},
        {"--console=on", "--console takes no value"},
        {"--console status", "status isn't a link; a command must be the first word"},
        {"tarnik://a tarnik://b", "only one link can be given, not also tarnik://b"},
        {"--bundle /b", "unknown option --bundle"},
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

TEST(CommandTable, namesTheNearestCommand) {
    const std::pair<const char*, const char*> cases[] = {
        {"hlep", "; did you mean help?"},
        {"he", "; did you mean help?"},
        {"something-else", "(tarnik --help lists the commands)"}};
    for (const auto& [word, end] : cases)
        EXPECT_TRUE(unknownCommand(word).ends_with(end)) << unknownCommand(word);
}

TEST(CommandTable, hasOneFunctionForEachCommand) {
    for (const auto& command : commandTable())
        EXPECT_NE(command.run == nullptr, heavyCommand(command.name) == nullptr) << command.name;
}

TEST(CommandOutput, hasColoursOnTerminalsOnly) {
    const auto styled = [](int fd) {
        return CommandOutput(fd, fd).styled(CommandOutput::Style::red, "text");
    };
    const UniqueFd terminal(::posix_openpt(O_RDWR | O_NOCTTY));
    ::setenv("TERM", "xterm", 1);
    ::unsetenv("NO_COLOR");
    EXPECT_EQ(styled(terminal.get()), "\x1b[31mtext\x1b[0m");
    EXPECT_EQ(styled(Spawner::pipe()->writeEnd.get()), "text");
    ::setenv("NO_COLOR", "1", 1);
    EXPECT_EQ(styled(terminal.get()), "text");
}

TEST(CommandOutputDeathTest, endsQuietlyIfItsReaderHasGone) {
    std::signal(SIGPIPE, SIG_IGN);
    auto pipe = *Spawner::pipe();
    pipe.readEnd.reset();
    EXPECT_EXIT(CommandOutput(pipe.writeEnd.get(), STDERR_FILENO).line("text"),
                testing::KilledBySignal(SIGPIPE), "^$");
}

}  // namespace tarnik
