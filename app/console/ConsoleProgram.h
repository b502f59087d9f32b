#pragma once

#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"
#include "app/options/CommandLine.h"

namespace tarnik {

// Runs the application in the terminal and returns the exit status. The program is not moved, has no login
// item, and stores no preferences. Call on the main thread, before any other thread exists.
int runConsole(const CommandLine& line, HostEnvironment host, const ProgramLocation& place);

}  // namespace tarnik
