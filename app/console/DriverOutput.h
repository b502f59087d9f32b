#pragma once

#include "app/console/ConsoleOutput.h"
#include "app/platform/MainThread.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// The write end of a pipe whose lines are shown as the desktop driver's; none when no pipe can be had. From
// any thread. `output` is there for as long as the main thread takes tasks.
UniqueFd attachDriverOutput(const MainThread& mainThread, ConsoleOutput& output);

}  // namespace tarnik
