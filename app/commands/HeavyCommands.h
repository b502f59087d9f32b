#pragma once

#include <string_view>

#include "app/commands/Command.h"

namespace tarnik {

// Returns the function of a command whose function isn't in the command table, or null.
RunCommand heavyCommand(std::string_view name);

// Runs --console, or a command whose function isn't in the command table: such a command needs more of the
// program than the front should load. Returns the exit status.
int runConsolePart(char** argv);

}  // namespace tarnik
