#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/CommandLine.h"
#include "app/model/Machine.h"
#include "app/platform/SystemFolders.h"

namespace tarnik {

// Where the program stands.
struct ProgramLocation {
    std::string executable;
    std::optional<std::string> bundle;
    SystemFolders folders;
};

// Shows the machine to a person, to the end; the program's exit status.
using ProgramFace =
    std::function<int(const CommandLine& line, Machine machine, const ProgramLocation& place)>;

// Prints one line on standard error, after the program's name.
void printError(const std::string& what);

// Says why the program doesn't start, and gives the exit status for that.
int refuseStart(const std::string& why);

// Runs `face` on the machine that this is. `name` is what the program was started as. On the main thread,
// before any other thread was made.
int runProgram(const CommandLine& line, const char* name, const ProgramFace& face);

}  // namespace tarnik
