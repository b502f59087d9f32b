#pragma once

#include "app/CommandLine.h"
#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"

namespace tarnik {

// Runs the application in the terminal, and returns the exit status. Such a program is never moved, has no
// login item, and stores no preferences. Main thread; call before any other thread exists.
int runConsole(const CommandLine& line, HostEnvironment host, const ProgramLocation& place);

}  // namespace tarnik
