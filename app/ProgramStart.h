#pragma once

#include <functional>
#include <optional>
#include <string>

#include "app/CommandLine.h"
#include "app/model/HostEnvironment.h"
#include "app/platform/SystemFolders.h"

namespace tarnik {

// The location of the running program and of its folders.
struct ProgramLocation {
    std::string executable;
    std::optional<std::string> bundle;
    SystemFolders folders;
};

// Runs the window or the console until the program ends. Returns the exit status.
using ProgramFace =
    std::function<int(const CommandLine& line, HostEnvironment host, const ProgramLocation& place)>;

// Prints the program's name and the message as one line on standard error.
void printError(const std::string& what);

// Prints the reason why the program can't start. Returns the exit status of such a program.
int refuseStart(const std::string& why);

// Reads the environment, the folders and the bundle's settings, and runs `face` with them. `name` is argument
// 0. Call on the main thread before any other thread exists.
int runProgram(const CommandLine& line, const char* name, const ProgramFace& face);

}  // namespace tarnik
