// Prints the completions of a shell, generated from the tables of commands and options.
#include <functional>
#include <string>

#include "app/commands/CommandHelp.h"
#include "app/commands/CommandTable.h"
#include "app/commands/Commands.h"

namespace tarnik {
namespace {

// A command with its options, or the start of the program without a command, whose name is empty.
struct Completed {
    std::string name;
    std::vector<OptionEntry> options;
    std::string_view argument;
};

std::vector<OptionEntry> forUsers(const std::vector<OptionEntry>& entries) {
    std::vector<OptionEntry> shown;
    for (const auto& entry : entries) {
        if (entry.audience == OptionEntry::Audience::users) shown.push_back(entry);
    }
    return shown;
}

Completed program() {
    return {.name = "", .options = forUsers(CommandLine::options(CommandLine::thisBuild())), .argument = ""};
}

std::vector<Completed> completedCommands() {
    std::vector<Completed> all;
    for (const auto& command : commandTable()) {
        all.push_back({.name = command.name,
                       .options = forUsers(optionsOf(command, CommandLine::thisBuild())),
                       .argument = placeholderOf(command)});
    }
    return all;
}

std::string joined(const std::vector<std::string_view>& words) {
    std::string text;
    for (const auto word : words) text += (text.empty() ? "" : " ") + std::string(word);
    return text;
}

// Returns the words that a placeholder stands for, such as "on off"; empty for a path or free text.
std::string wordsFor(std::string_view placeholder) {
    std::vector<std::string_view> names;
    for (const auto& command : commandTable()) names.emplace_back(command.name);
    return joined(placeholder == "COMMAND" ? names : choicesOf(placeholder));
}

// Returns one of three texts: for a folder, for a file, or for anything else.
std::string_view byKind(std::string_view placeholder, std::string_view folder, std::string_view file,
                        std::string_view other) {
    if (placeholder == "DIR") return folder;
    return placeholder == "FILE" ? file : other;
}

// Returns the text in single quotes, as all three shells read it.
std::string quoted(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string bashValues(const Completed& command) {
    std::string lines;
    for (const auto& option : command.options) {
        if (!option.takesValue()) continue;
        std::string pattern = command.name + ":--" + option.name;
        if (option.letter != '\0') pattern.append(" | ").append(command.name).append(":-") += option.letter;
        const auto words = wordsFor(option.value);
        std::string action(
            byKind(option.value, "_tarnik_paths -d; return", "_tarnik_paths -f; return", "return"));
        if (!words.empty()) action = "words=" + quoted(words);
        lines.append("        ").append(pattern).append(") ").append(action).append(" ;;\n");
    }
    return lines;
}

std::string bashWords(const Completed& command) {
    std::string words = wordsFor(command.argument);
    for (const auto& option : command.options) {
        words += (words.empty() ? "--" : " --") + std::string(option.name);
    }
    std::string line = "        " + quoted(command.name) + ") words=" + quoted(words);
    const auto paths = byKind(command.argument, "-d", "-f", "");
    if (!paths.empty())
        line += "; [[ $current == -* ]] || { _tarnik_paths " + std::string(paths) + "; return; }";
    return line + " ;;\n";
}

std::string bashCompletion() {
    std::string values = bashValues(program());
    std::string words = bashWords(program());
    for (const auto& command : completedCommands()) {
        values += bashValues(command);
        words += bashWords(command);
    }
    return "# bash completion for tarnik\n"
           "_tarnik_paths() {\n"
           "    compopt -o filenames\n"
           "    mapfile -t COMPREPLY < <(compgen \"$1\" -- \"$current\")\n"
           "}\n"
           "_tarnik() {\n"
           "    local current=$2 previous=$3 command='' words=''\n"
           "    if [[ $previous == = ]]; then previous=${COMP_WORDS[COMP_CWORD - 2]}; fi\n"
           "    if [[ $current == = ]]; then current='' previous=${COMP_WORDS[COMP_CWORD - 1]}; fi\n"
           "    if ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[1]} != -* ]]; then command=${COMP_WORDS[1]}; fi\n"
           "    case $command:$previous in\n" +
           values +
           "    esac\n"
           "    [[ -n $words ]] || case $command in\n" +
           words +
           "    esac\n"
           "    if ((COMP_CWORD == 1)); then words+=" +
           quoted(" " + wordsFor("COMMAND")) +
           "; fi\n"
           "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$current\")\n"
           "}\n"
           "complete -F _tarnik tarnik\n";
}

// Returns "MESSAGE:ACTION" for a value or argument.
std::string zshAction(std::string_view placeholder) {
    const auto words = wordsFor(placeholder);
    const std::string message(words.empty() ? placeholder : "value");
    if (!words.empty()) return message + ":(" + words + ")";
    return message + ":" + std::string(byKind(placeholder, "_directories", "_files", ""));
}

std::string zshArguments(const Completed& command) {
    std::string text = "_arguments";
    for (const auto& option : command.options) {
        const std::string value = option.takesValue() ? ":" + zshAction(option.value) : "";
        const std::string about = "[" + std::string(option.summary) + "]" + value;
        const std::string equals = option.takesValue() ? "=" : "";
        const std::string name = std::string("--").append(option.name).append(equals).append(about);
        text.append(" ").append(quoted(name));
        if (option.letter == '\0') continue;
        const std::string letter = std::string("-").append(1, option.letter).append(about);
        text.append(" ").append(quoted(letter));
    }
    if (!command.argument.empty()) text += " " + quoted("1:" + zshAction(command.argument));
    return text;
}

std::string zshCompletion() {
    std::string names;
    std::string cases;
    for (const auto& command : commandTable())
        names += "        " + quoted(std::string(command.name) + ":" + command.summary) + "\n";
    for (const auto& command : completedCommands())
        cases += "        " + command.name + ") " + zshArguments(command) + " ;;\n";
    return "#compdef tarnik\n"
           "_tarnik() {\n"
           "    local -a commands=(\n" +
           names +
           "    )\n"
           "    if (( CURRENT == 2 )) && [[ $words[2] != -* ]]; then\n"
           "        _describe command commands\n"
           "        return\n"
           "    fi\n"
           "    if [[ $words[2] == -* ]]; then\n"
           "        " +
           zshArguments(program()) +
           "\n"
           "        return\n"
           "    fi\n"
           "    shift words\n"
           "    (( CURRENT -= 1 ))\n"
           "    case $words[1] in\n" +
           cases +
           "    esac\n"
           "}\n"
           "_tarnik \"$@\"\n";
}

std::string fishOptions(const Completed& command, const std::string& condition) {
    const std::string start = "complete -c tarnik -n " + quoted(condition);
    std::string lines;
    for (const auto& option : command.options) {
        lines += start + " -l " + option.name;
        if (option.letter != '\0') lines += std::string(" -s ") + option.letter;
        if (option.takesValue()) {
            const auto words = wordsFor(option.value);
            lines += byKind(option.value, " -x -a '(__fish_complete_directories)'", " -r -F", " -x");
            if (!words.empty()) lines += " -a " + quoted(words);
        }
        lines += " -d " + quoted(option.summary) + "\n";
    }
    const auto words = wordsFor(command.argument);
    if (!words.empty()) lines += start + " -a " + quoted(words) + "\n";
    const auto paths = byKind(command.argument, " -a '(__fish_complete_directories)'", " -F", "");
    return paths.empty() ? lines : lines + start + std::string(paths) + "\n";
}

std::string fishCompletion() {
    std::string page = "# fish completion for tarnik\ncomplete -c tarnik -f\n";
    for (const auto& command : commandTable()) {
        page += std::string("complete -c tarnik -n __fish_use_subcommand -a ") + command.name + " -d " +
                quoted(command.summary) + "\n";
    }
    page += fishOptions(program(), "__fish_use_subcommand");
    for (const auto& command : completedCommands())
        page += fishOptions(command, "__fish_seen_subcommand_from " + command.name);
    return page;
}

}  // namespace

ExitCode runCompletion(const CommandOptions& options, const CommandDeps& deps) {
    const auto& shell = options.arguments().front();
    if (shell == "bash") deps.output.write(bashCompletion());
    if (shell == "zsh") deps.output.write(zshCompletion());
    if (shell == "fish") deps.output.write(fishCompletion());
    return ExitCode::done;
}

}  // namespace tarnik
