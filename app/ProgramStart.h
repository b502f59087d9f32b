#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/CommandLine.h"
#include "app/model/HostEnvironment.h"
#include "app/platform/SystemFolders.h"
#include "core/process/Environment.h"

namespace tarnik {

// The location of the running program and of its folders.
struct ProgramLocation {
    std::string executable;  // the one that users start: on Linux "tarnik", which executes the others
    std::optional<std::string> bundle;
    SystemFolders folders;
};

// The environment and the location of this run.
struct ProgramRun {
    Environment environment;
    std::string userFolder;
    ProgramLocation place;

    // `bundle` replaces the bundle that contains the program. `name` is argument 0.
    static ProgramRun current(const std::optional<std::string>& bundle, const char* name);

    // Reads the settings of the bundle.
    HostEnvironment host() const;
};

// Runs the window or the console until the program ends. Returns the exit status.
using ProgramFace =
    std::function<int(const CommandLine& line, HostEnvironment host, const ProgramLocation& place)>;

// Prints the program's name and the message as one line on standard error.
void printError(const std::string& what);

// Prints the reason why the program can't start. Returns the exit status of such a program.
int refuseStart(const std::string& why);

// Creates the application-support folder and runs `face` in the environment of this run. `name` is argument
// 0. Call on the main thread before any other thread exists.
int runProgram(const CommandLine& line, const char* name, const ProgramFace& face);

}  // namespace tarnik
