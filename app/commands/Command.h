#pragma once

#include <span>

#include "app/ProgramStart.h"
#include "app/commands/CommandOutput.h"
#include "app/options/CommandOptions.h"
#include "app/options/ExitCode.h"

namespace tarnik {

// The parts of the program that a command uses.
struct CommandDeps {
    CommandOutput& output;
    const ProgramRun& run;  // environment, folders and bundle
};

using RunCommand = ExitCode (*)(const CommandOptions& options, const CommandDeps& deps);

// One command of the program: `tarnik NAME [OPTION...] [ARGUMENT]`.
struct Command {
    const char* name;
    const char* summary;       // one line, begins with a lower-case verb
    const char* details = "";  // more lines for the command's own help, each of at most 78 characters
    std::span<const OptionEntry> options = {};
    const char* argument = "";  // a placeholder as in OptionEntry, "[FILE]" if it may be missing
    RunCommand run = nullptr;   // null if HeavyCommands.cpp has the function; Front.cpp then calls it
};

}  // namespace tarnik
