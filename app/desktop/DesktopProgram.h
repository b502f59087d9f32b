#pragma once

#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"
#include "app/options/CommandLine.h"

namespace tarnik {

// Runs the application with a window and a status item, and returns the exit status. `name` is the program's
// argument 0. Call on the main thread, before any other thread exists.
int runDesktop(const CommandLine& line, HostEnvironment host, const ProgramLocation& place, char* name);

// Runs the window, or the screens for developers, with the arguments of main(). Returns the exit status.
int runWindowPart(char** argv);

}  // namespace tarnik
