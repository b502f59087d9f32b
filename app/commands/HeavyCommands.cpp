#include "app/commands/HeavyCommands.h"

#include "app/commands/CommandTable.h"
#include "app/commands/Commands.h"
#include "app/commands/Front.h"
#include "app/console/ConsoleProgram.h"
#include "app/texts/ProgramTexts.h"

namespace tarnik {
namespace {

// A command of the table and its function.
struct HeavyCommand {
    std::string_view name;
    RunCommand run;
};

constexpr std::array heavyCommands{
    HeavyCommand{"doctor", runDoctor},       HeavyCommand{"report", runReport},
    HeavyCommand{"verify", runVerify},       HeavyCommand{"serve", runServeCommand},
    HeavyCommand{"uninstall", runUninstall},
};

}  // namespace

RunCommand heavyCommand(std::string_view name) {
    for (const auto& command : heavyCommands) {
        if (command.name == name) return command.run;
    }
    return nullptr;
}

int runConsolePart(char** argv) {
    const auto words = wordsOf(argv);
    if (const auto run = words.empty() ? nullptr : heavyCommand(words.front()))
        return runCommand(*findCommand(words.front()), run, {words.begin() + 1, words.end()}, argv[0]);
    const auto line = CommandLine::parse(words, CommandLine::thisBuild());
    if (!line) return refuseStart(line.error());
    if (line->task != CommandLine::Task::runConsole) return refuseStart(ProgramTexts::startTheFront);
    return runProgram(*line, argv[0], runConsole);
}

}  // namespace tarnik
