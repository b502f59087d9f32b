#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/model/HostEnvironment.h"
#include "app/options/CommandLine.h"
#include "app/platform/SystemFolders.h"
#include "core/process/Environment.h"

namespace tarnik {

// The location of the running program and of its folders.
struct ProgramLocation {
    std::string executable;  // the program that users start; on Linux always "tarnik", not its siblings
    std::optional<std::string> bundle;
    SystemFolders folders;
};

// The environment and the location of this run.
struct ProgramRun {
    Environment environment;
    std::string userFolder;
    ProgramLocation place;

    // `bundle` replaces the bundle that contains the program. `name` is argument 0. It is used if the system
    // doesn't report the program's path.
    static ProgramRun current(const std::optional<std::string>& bundle, const char* name);

    // Reads the settings of the bundle and of the organisation.
    HostEnvironment host() const;
};

// Runs the window or the console until the program ends. Returns the exit status.
using ProgramFace =
    std::function<int(const CommandLine& line, HostEnvironment host, const ProgramLocation& place)>;

// Prints the program's name and the message as one line on standard error.
void printError(const std::string& what);

// Prints the reason why the program can't start. Returns the exit status of ExitCode::wrongUse.
int refuseStart(const std::string& why);

// Checks the folders of the command line, creates the application support folder, and runs `face`. Returns
// the exit status. `name` is argument 0. Call on the main thread before any other thread exists.
int runProgram(const CommandLine& line, const char* name, const ProgramFace& face);

}  // namespace tarnik
