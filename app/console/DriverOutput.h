#pragma once

#include "app/console/ConsoleOutput.h"
#include "app/platform/MainThread.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Returns the write end of a pipe, or an empty descriptor on failure. Each line that is written to the pipe
// is printed as output of the desktop driver. Call from any thread. `output` outlives the event loop.
UniqueFd attachDriverOutput(const MainThread& mainThread, ConsoleOutput& output);

}  // namespace tarnik
