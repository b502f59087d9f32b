#include "app/CommandLine.h"

#include <cstdlib>
#include <functional>
#include <map>

#include "app/bundle/BuildKind.h"
#include "core/foundation/TextCleanup.h"
#include "core/relocation/Relocation.h"

namespace tarnik {
namespace {

using Task = CommandLine::Task;

constexpr double longestConnectedAfter = 3600;
constexpr std::size_t longestQuote = 200;

std::string quoted(const std::string& word) {
    return sanitizedLine(word, longestQuote);
}

std::optional<Seconds> parseSeconds(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value > 0) || value > longestConnectedAfter) return std::nullopt;
    return Seconds(value);
}

using Flag = std::function<void(CommandLine&)>;

Flag toDo(Task task) {
    return [task](CommandLine& line) { line.task = task; };
}

const std::map<std::string, Flag>& flags() {
    static const std::map<std::string, Flag> known{
        {"--console", toDo(Task::runConsole)},
        {"--help", toDo(Task::showHelp)},
        {"--version", toDo(Task::showVersion)},
        {"--list-screens", toDo(Task::listScreens)},
        {"--at-login", [](CommandLine& line) { line.atLogin = true; }},
        {"--dark", [](CommandLine& line) { line.dark = true; }},
        {"--driver-output", [](CommandLine& line) { line.driverOutput = true; }},
        // The relocator reads this one from the arguments that the system recorded.
        {std::string(Relocation::relaunchArgument), [](CommandLine&) {}},
    };
    return known;
}

// Stores the value of an option. Returns an error, or an empty text.
using Take = std::function<std::string(CommandLine&, const std::string&)>;

Take keep(std::optional<std::string> CommandLine::* field) {
    return [field](CommandLine& line, const std::string& value) {
        line.*field = value;
        return "";
    };
}

Take screen(Task task) {
    return [task](CommandLine& line, const std::string& value) {
        line.task = task;
        line.screen = value;
        return "";
    };
}

std::map<std::string, Take> options(CommandLine::Build build) {
    std::map<std::string, Take> known{
        {"--node-home", keep(&CommandLine::nodeHome)},
        {"--link", keep(&CommandLine::link)},
        {"--show-screen", screen(Task::showScreen)},
        {"--write-screens", screen(Task::writeScreens)},
        {"--switches",
         [](auto& line, const auto& value) {
             line.switchesOn = value == "on";
             return value == "on" || value == "off" ? "" : "--switches takes on or off, not " + quoted(value);
         }},
        {"--connected-after",
         [](auto& line, const auto& value) -> std::string {
             const auto seconds = parseSeconds(value);
             if (!seconds) return "--connected-after takes seconds, up to 3600, not " + quoted(value);
             line.connectedAfter = *seconds;
             return "";
         }},
    };
    if (build == CommandLine::Build::development) {
        known.emplace("--keep-awake", keep(&CommandLine::keepAwake));
        known.emplace("--bundle", keep(&CommandLine::bundle));
    }
    return known;
}

}  // namespace

CommandLine::Build CommandLine::thisBuild() {
    return isDevelopmentBuild() ? Build::development : Build::release;
}

std::expected<CommandLine, std::string> CommandLine::parse(const std::vector<std::string>& words,
                                                           Build build) {
    const auto known = tarnik::options(build);
    CommandLine line;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (const auto flag = flags().find(word); flag != flags().end()) {
            flag->second(line);
        } else if (!word.starts_with('-')) {
            if (line.link) return std::unexpected("one link at a time, not also " + quoted(word));
            line.link = word;
        } else if (const auto option = known.find(word); option == known.end()) {
            return std::unexpected("unknown argument " + quoted(word) + " (--help lists them)");
        } else if (i + 1 == words.size()) {
            return std::unexpected(word + " needs a value after it");
        } else if (const auto wrong = option->second(line, words[++i]); !wrong.empty()) {
            return std::unexpected(wrong);
        }
    }
    return line;
}

}  // namespace tarnik
