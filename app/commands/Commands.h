#pragma once

#include "app/commands/Command.h"

// The functions of the commands. Each is in the source that is named after it: runHelp is in HelpCommand.cpp.
namespace tarnik {

ExitCode runCompletion(const CommandOptions& options, const CommandDeps& deps);
ExitCode runConnect(const CommandOptions& options, const CommandDeps& deps);
ExitCode runDoctor(const CommandOptions& options, const CommandDeps& deps);
ExitCode runHelp(const CommandOptions& options, const CommandDeps& deps);
ExitCode runHistory(const CommandOptions& options, const CommandDeps& deps);
ExitCode runLogs(const CommandOptions& options, const CommandDeps& deps);
ExitCode runOpen(const CommandOptions& options, const CommandDeps& deps);
ExitCode runQuit(const CommandOptions& options, const CommandDeps& deps);
ExitCode runReport(const CommandOptions& options, const CommandDeps& deps);
ExitCode runRestart(const CommandOptions& options, const CommandDeps& deps);
ExitCode runServeCommand(const CommandOptions& options, const CommandDeps& deps);
ExitCode runStatus(const CommandOptions& options, const CommandDeps& deps);
ExitCode runUninstall(const CommandOptions& options, const CommandDeps& deps);
ExitCode runVerify(const CommandOptions& options, const CommandDeps& deps);

}  // namespace tarnik
