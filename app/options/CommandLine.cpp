#include "app/options/CommandLine.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "app/bundle/BuildKind.h"
#include "app/options/StandardOptions.h"
#include "core/foundation/TextCleanup.h"
#include "core/relocation/Relocation.h"

namespace tarnik {
namespace {

using Task = CommandLine::Task;
using enum OptionEntry::Audience;

constexpr std::size_t shortestLink = 20;  // shorter words are mistyped commands; a bare code has 22 letters
constexpr std::size_t longestQuote = 200;

// An option of the program and its effect on the parsed line.
struct ProgramOption {
    OptionEntry entry;
    void (*apply)(CommandLine& line, const std::string& value);
};

template <Task task>
void setTask(CommandLine& line, const std::string&) {
    line.task = task;
}

template <Task task>
void setScreen(CommandLine& line, const std::string& value) {
    line.task = task;
    line.screen = value;
}

template <auto field>
void setFlag(CommandLine& line, const std::string&) {
    line.*field = true;
}

template <auto field>
void setText(CommandLine& line, const std::string& value) {
    line.*field = value;
}

constexpr std::array programOptions{
    ProgramOption{{.name = "console", .summary = "run in this terminal instead of a window"},
                  setTask<Task::runConsole>},
    ProgramOption{{.name = "link", .value = "LINK", .summary = "the same as LINK alone"},
                  setText<&CommandLine::link>},
    ProgramOption{StandardOptions::nodeHome, setText<&CommandLine::nodeHome>},
    ProgramOption{{.name = "help", .letter = 'h', .summary = "show this page"}, setTask<Task::showHelp>},
    ProgramOption{{.name = "help-developers", .summary = "show the options for developers"},
                  setTask<Task::showDeveloperHelp>},
    ProgramOption{{.name = "version", .summary = "show the version"}, setTask<Task::showVersion>},
    ProgramOption{{.name = "at-login",
                   .summary = "open the window only if it is needed; the login item uses this",
                   .audience = developers},
                  setFlag<&CommandLine::atLogin>},
    ProgramOption{
        StandardOptions::connectedAfter,
        [](CommandLine& line, const std::string& value) { line.connectedAfter = Seconds(std::stod(value)); }},
    ProgramOption{
        {.name = "away-after",
         .value = "SECONDS",
         .summary = "show a notice when the helper has been away this long; the default is 300",
         .audience = developers},
        [](CommandLine& line, const std::string& value) { line.awayAfter = Seconds(std::stod(value)); }},
    ProgramOption{{.name = "list-screens",
                   .summary = "print the name of every state of the window",
                   .audience = developers},
                  setTask<Task::listScreens>},
    ProgramOption{{.name = "show-screen",
                   .value = "NAME",
                   .summary = "show this state of the window, and run nothing",
                   .audience = developers},
                  setScreen<Task::showScreen>},
    ProgramOption{{.name = "dark", .summary = "show the screen in dark colours", .audience = developers},
                  setFlag<&CommandLine::dark>},
    ProgramOption{{.name = "language",
                   .value = "NAME",
                   .summary = "show the window in this language: en, de, or pseudo and rtl for checks",
                   .audience = developers},
                  setText<&CommandLine::language>},
    ProgramOption{{.name = "write-screens",
                   .value = "DIR",
                   .summary = "write an image of every state to DIR, light and dark",
                   .audience = developers},
                  setScreen<Task::writeScreens>},
    ProgramOption{{.name = "switches",
                   .value = "on|off",
                   .summary = "set both simulated privacy switches of the console; the default is off",
                   .audience = developers},
                  [](CommandLine& line, const std::string& value) { line.switchesOn = value == "on"; }},
    ProgramOption{{.name = "driver-output",
                   .summary = "print the output of the desktop driver in the console",
                   .audience = developers},
                  setFlag<&CommandLine::driverOutput>},
    ProgramOption{StandardOptions::bundle, setText<&CommandLine::bundle>},
    ProgramOption{StandardOptions::keepAwake, setText<&CommandLine::keepAwake>},
    // The relocator reads this one from the arguments that the system recorded.
    ProgramOption{{.name = "tarnik-relocation-relaunch", .audience = nobody},
                  [](CommandLine&, const std::string&) {}},
};

static_assert(Relocation::relaunchArgument == "--tarnik-relocation-relaunch");

const ProgramOption& findOption(const std::string& name) {
    return *std::ranges::find_if(programOptions,
                                 [&](const auto& option) { return option.entry.name == name; });
}

}  // namespace

CommandLine::Build CommandLine::thisBuild() {
    return isDevelopmentBuild() ? Build::development : Build::release;
}

std::vector<OptionEntry> CommandLine::options(Build build) {
    std::vector<OptionEntry> entries;
    entries.reserve(std::size(programOptions));
    for (const auto& option : programOptions) entries.push_back(option.entry);
    return acceptedOptions(entries, build);
}

std::expected<CommandLine, std::string> CommandLine::parse(const std::vector<std::string>& words,
                                                           Build build) {
    const auto entries = options(build);
    const auto parsed = CommandOptions::parse(entries, words);
    if (!parsed) return std::unexpected(parsed.error());
    CommandLine line;
    for (const auto& [name, value] : parsed->given()) findOption(name).apply(line, value);
    for (const auto& argument : parsed->arguments()) {
        const std::string word = sanitizedLine(argument, longestQuote);
        if (!resemblesLink(argument))
            return std::unexpected(word + " isn't a link; a command must be the first word");
        if (line.link) return std::unexpected("only one link can be given, not also " + word);
        line.link = argument;
    }
    return line;
}

std::vector<OptionEntry> acceptedOptions(std::span<const OptionEntry> entries, CommandLine::Build build) {
    std::vector<OptionEntry> accepted;
    std::ranges::copy_if(entries, std::back_inserter(accepted), [build](const auto& entry) {
        return build == CommandLine::Build::development || entry.audience != developmentBuilds;
    });
    return accepted;
}

bool resemblesLink(std::string_view word) {
    return word.size() >= shortestLink || word.contains("://");
}

}  // namespace tarnik
