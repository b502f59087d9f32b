#pragma once

#include "app/console/ConsoleOutput.h"
#include "app/platform/MainThread.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

// Returns the write end of a pipe whose lines are printed as the desktop driver's, or an empty descriptor on
// failure. Call from any thread. `output` outlives the event loop.
UniqueFd attachDriverOutput(const MainThread& mainThread, ConsoleOutput& output);

}  // namespace tarnik
