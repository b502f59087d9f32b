#pragma once

#include <functional>

#include "core/foundation/Time.h"

namespace tarnik::Relocation {

// How long an older copy that runs is given to quit before it is forced.
inline constexpr Seconds gracefulQuitWait = Seconds(30);

enum class TakeoverResult { quitGracefully, neededForce, stillRunning };

// Has another copy quit: asks it, waits, forces it, waits.
struct TakeoverSteps {
    std::function<bool()> isRunning;
    std::function<void()> terminate;
    std::function<void()> forceTerminate;
    std::function<void(Seconds)> sleep;  // blocks the caller
    Seconds graceful = gracefulQuitWait;
    Seconds forced;
    Seconds interval;  // between two looks; one that isn't positive makes for a single look
};

// Blocks for up to `graceful` + `forced`, each rounded up to whole intervals.
TakeoverResult takeOver(const TakeoverSteps& steps);

}  // namespace tarnik::Relocation
