#include "app/commands/CommandTable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "app/commands/CommandHelp.h"
#include "app/commands/Commands.h"
#include "app/options/CommandLine.h"
#include "app/options/StandardOptions.h"
#include "app/texts/CommandTexts.h"
#include "core/foundation/TextCleanup.h"
#include "core/node/NodeHome.h"

namespace tarnik {
namespace {

constexpr std::size_t longestQuote = 200;

constexpr std::array statusOptions{StandardOptions::json,
                                   OptionEntry{.name = "watch", .summary = "show each change until Ctrl-C"},
                                   StandardOptions::nodeHome};
constexpr std::array connectOptions{
    StandardOptions::yes,
    OptionEntry{.name = "replace", .summary = "end the connection to the current account"}};
constexpr std::array quitOptions{OptionEntry{.name = "wait", .summary = "wait until everything has ended"}};
constexpr std::array historyOptions{
    OptionEntry{
        .name = "lines", .letter = 'n', .value = "N", .summary = "show the last N events (default 50)"},
    StandardOptions::json,
};
constexpr std::array logsOptions{
    OptionEntry{.name = "follow", .letter = 'f', .summary = "print new lines as they are written"},
    OptionEntry{
        .name = "lines", .letter = 'n', .value = "N", .summary = "show the last N lines (default 50)"},
};
constexpr std::array examinationOptions{StandardOptions::json, StandardOptions::nodeHome,
                                        StandardOptions::bundle};
constexpr std::array reportOptions{StandardOptions::nodeHome, StandardOptions::bundle};
constexpr std::array uninstallOptions{
    OptionEntry{.name = "dry-run", .summary = "show what would be removed, and change nothing"},
    StandardOptions::yes,
    StandardOptions::nodeHome,
};
constexpr std::array serveOptions{StandardOptions::nodeHome, StandardOptions::connectedAfter,
                                  StandardOptions::bundle, StandardOptions::keepAwake};

constexpr std::array commands{
    Command{.name = "status",
            .summary = "show whether this computer is connected, or why not",
            .options = statusOptions,
            .run = runStatus},
    Command{.name = "connect",
            .summary = "connect this computer by a link from your chat",
            .details = "Without LINK, reads it from standard input.\n",
            .options = connectOptions,
            .argument = "[LINK]",
            .run = runConnect},
    Command{.name = "restart", .summary = "restart the helper now", .run = runRestart},
    Command{.name = "open", .summary = "open the window of the running tarnik", .run = runOpen},
    Command{.name = "quit",
            .summary = "end the running tarnik and its helper",
            .options = quitOptions,
            .run = runQuit},
    Command{.name = "history",
            .summary = "show what happened: starts, failures, pairings, updates",
            .details = "With --json each line is one JSON object.\n",
            .options = historyOptions,
            .run = runHistory},
    Command{.name = "logs",
            .summary = "show the log of the helper, or of tarnik itself",
            .details = "Without an argument it shows the log of the helper.\n",
            .options = logsOptions,
            .argument = "[helper|tarnik]",
            .run = runLogs},
    Command{.name = "doctor",
            .summary = "find out what is wrong, and what to do",
            .details = "It changes nothing and takes up to 20 seconds. The exit status is 0 if nothing is\n"
                       "wrong.\n",
            .options = examinationOptions},
    Command{.name = "report",
            .summary = "gather what support needs, with private data hidden",
            .details = "The report is shown, or written to FILE, which must not exist. It is never sent.\n"
                       "Read it before you pass it on.\n",
            .options = reportOptions,
            .argument = "[FILE]"},
    Command{.name = "verify",
            .summary = "compare the installed helper with its signed release",
            .details = "It names every file that differs. The exit status is 0 if none does.\n",
            .options = examinationOptions},
    Command{.name = "serve",
            .summary = "run without a window and without reading input, for a service manager",
            .details =
                "Connect it with tarnik connect. It reports its readiness to systemd, ends by SIGTERM,\n"
                "and prints one line for each event. The package has a unit for it:\n"
                "systemctl --user enable --now tarnik\n",
            .options = serveOptions},
    Command{.name = "uninstall",
            .summary = "stop tarnik and remove the helper, the logs and the settings",
            .details = "It removes only what is from tarnik, and shows it before. The program itself is\n"
                       "removed by the package manager, or by moving the application to the Trash.\n"
                       "With the --node-home of a second helper, it removes only that helper.\n",
            .options = uninstallOptions},
    Command{.name = "completion",
            .summary = "print the completions for a shell",
            .argument = "bash|zsh|fish",
            .run = runCompletion},
    Command{.name = "help",
            .summary = "show this help, or the help of a command",
            .argument = "[COMMAND]",
            .run = runHelp},
};

// Returns a message if the command doesn't accept these arguments.
std::optional<std::string> problemWithArguments(const Command& command,
                                                const std::vector<std::string>& arguments) {
    const auto wanted = placeholderOf(command);
    const bool isOptional = *command.argument == '[';
    if (arguments.empty() && !wanted.empty() && !isOptional)
        return CommandTexts::missingArgument(command.name, command.argument);
    const std::size_t most = wanted.empty() ? 0 : 1;
    if (arguments.size() > most)
        return CommandTexts::excessArgument(command.name, sanitizedLine(arguments[most], longestQuote));
    if (arguments.empty()) return std::nullopt;
    return problemWithValue(wanted, command.name, arguments.front());
}

}  // namespace

std::span<const Command> commandTable() {
    return commands;
}

const Command* findCommand(std::string_view name) {
    const auto found = std::ranges::find(commands, name, [](const auto& command) { return command.name; });
    return found == commands.end() ? nullptr : &*found;
}

std::string unknownCommand(const std::string& word) {
    std::vector<std::string_view> names;
    names.reserve(std::size(commands));
    for (const auto& command : commands) names.emplace_back(command.name);
    return CommandTexts::unknownCommand(sanitizedLine(word, longestQuote), nearestName(word, names));
}

int runCommand(const Command& command, RunCommand run, const std::vector<std::string>& words,
               const char* programName) {
    CommandOutput output;
    const auto build = CommandLine::thisBuild();
    const auto refuse = [&](const std::string& problem) {
        output.error(problem);
        output.note(CommandTexts::seeHelp(command.name));
        return exitStatus(ExitCode::wrongUse);
    };
    const auto options = CommandOptions::parse(optionsOf(command, build), words);
    if (!options) return refuse(options.error());
    if (options->has(helpOption.name)) {
        output.write(commandHelp(command, build));
        return exitStatus(ExitCode::done);
    }
    if (const auto problem = problemWithArguments(command, options->arguments())) return refuse(*problem);
    const auto environment = ProgramRun::current(options->value(StandardOptions::bundle.name), programName);
    const auto home =
        NodeHome::resolve(options->value(StandardOptions::nodeHome.name), environment.userFolder);
    if (!home) return refuse(describe(home.error()));
    const auto code = run(*options, {.output = output, .run = environment});
    if (!output.hasFailed()) return exitStatus(code);
    output.error(CommandTexts::cantWrite);
    return exitStatus(ExitCode::failed);
}

}  // namespace tarnik
