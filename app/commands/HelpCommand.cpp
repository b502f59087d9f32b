#include "app/commands/CommandHelp.h"
#include "app/commands/CommandTable.h"
#include "app/commands/Commands.h"

namespace tarnik {

ExitCode runHelp(const CommandOptions& options, const CommandDeps& deps) {
    const auto build = CommandLine::thisBuild();
    if (options.arguments().empty()) {
        deps.output.write(programHelp(build));
        return ExitCode::done;
    }
    const auto& name = options.arguments().front();
    const auto* command = findCommand(name);
    if (command == nullptr) {
        deps.output.error(unknownCommand(name));
        return ExitCode::wrongUse;
    }
    deps.output.write(commandHelp(*command, build));
    return ExitCode::done;
}

}  // namespace tarnik
