#pragma once

#include "app/ProgramStart.h"
#include "app/model/HostEnvironment.h"
#include "app/options/CommandLine.h"

namespace tarnik {

// Runs the application for a service manager, without a window and without reading standard input, and
// returns the exit status. Both switches are off, because they belong to a desktop. Main thread; call before
// any other thread exists.
int runServe(const CommandLine& line, HostEnvironment host, const ProgramLocation& place);

}  // namespace tarnik
