#include "app/commands/Front.h"

#include "app/ProgramStart.h"
#include "app/bundle/BuildKind.h"
#include "app/commands/CommandHelp.h"
#include "app/commands/CommandTable.h"
#include "app/options/CommandLine.h"

namespace tarnik {
namespace {

int print(const std::string& text) {
    CommandOutput output;
    output.write(text);
    return exitStatus(output.hasFailed() ? ExitCode::failed : ExitCode::done);
}

}  // namespace

int runFront(int argc, char** argv, const ProgramParts& parts) {
    using Task = CommandLine::Task;
    static char unnamed[] = "tarnik";
    static char* unnamedWords[] = {unnamed, nullptr};
    if (argc == 0) argv = unnamedWords;
    const auto words = wordsOf(argv);
    if (!words.empty() && !words.front().starts_with('-') && !resemblesLink(words.front())) {
        const auto* command = findCommand(words.front());
        if (command == nullptr) return refuseStart(unknownCommand(words.front()));
        if (command->run == nullptr) return parts.console(argv);
        return runCommand(*command, command->run, {words.begin() + 1, words.end()}, argv[0]);
    }
    const auto build = CommandLine::thisBuild();
    const auto line = CommandLine::parse(words, build);
    if (!line) return refuseStart(line.error());
    switch (line->task) {
        case Task::showHelp: return print(programHelp(build));
        case Task::showDeveloperHelp: return print(developerHelp(build));
        case Task::showVersion: return print("tarnik " + std::string(programVersion()) + "\n");
        case Task::runConsole: return parts.console(argv);
        case Task::openWindow:
        case Task::listScreens:
        case Task::showScreen:
        case Task::writeScreens: return parts.window(argv);
    }
    return exitStatus(ExitCode::failed);
}

std::vector<std::string> wordsOf(char** argv) {
    std::vector<std::string> words;
    for (char** word = argv + 1; *word != nullptr; ++word) words.emplace_back(*word);
    return words;
}

}  // namespace tarnik
