#pragma once

#include <functional>

#include "core/foundation/Time.h"
#include "core/process/StopSequence.h"

namespace tarnik::Relocation {

// The time that an older copy has to quit before it is killed.
inline constexpr Seconds gracefulQuitWait = StopSequences::otherCopy[0].wait;

// The result of ending another copy.
enum class TakeoverResult { quitGracefully, neededForce, stillRunning };

// The operations that end another copy, after runningCopyAction() (Relocation.h) has chosen that. takeOver()
// asks the copy to quit, waits, kills the copy and waits.
struct TakeoverSteps {
    std::function<bool()> isRunning;
    std::function<void()> terminate;
    std::function<void()> forceTerminate;
    std::function<void(Seconds)> sleep;  // blocks the caller
    Seconds graceful = gracefulQuitWait;
    Seconds forced = StopSequences::otherCopy[1].wait;
    Seconds interval;  // between two checks; with zero, each of the two waits makes a single check
};

// Blocks for up to `graceful` + `forced`, each rounded up to whole intervals.
TakeoverResult takeOver(const TakeoverSteps& steps);

}  // namespace tarnik::Relocation
