#pragma once

#include <array>
#include <functional>
#include <optional>
#include <span>

#include "core/foundation/Time.h"

namespace tarnik {

// An action that makes a process end. The values are ordered from the mildest to the most forceful.
enum class StopAction {
    closeInput,  // closes the pipe on which the process waits for an end-of-file
    terminate,   // SIGTERM, or the system's request to quit
    kill,        // SIGKILL, or the system's forced end
};

// One step of a stop: performs `action`, then waits up to `wait` for the end.
struct StopStep {
    StopAction action;
    Seconds wait;
};
using StopSequence = std::span<const StopStep>;

// The steps that stop each kind of process.
namespace StopSequences {

using enum StopAction;

inline constexpr std::array node{StopStep{closeInput, Seconds(10)}, StopStep{terminate, Seconds(5)},
                                 StopStep{kill, Seconds(5)}};
inline constexpr std::array driver{StopStep{closeInput, Seconds(2)}, StopStep{terminate, Seconds(1)},
                                   StopStep{kill, Seconds(5)}};
inline constexpr std::array leftoverDriver{StopStep{terminate, Seconds(1)}, StopStep{kill, Seconds(1)}};
inline constexpr std::array connectCommand{StopStep{terminate, Seconds(3)}, StopStep{kill, Seconds(5)}};
inline constexpr std::array shortCommand{StopStep{terminate, Seconds(2)}, StopStep{kill, Seconds(5)}};
inline constexpr std::array otherCopy{StopStep{terminate, Seconds(30)}, StopStep{kill, Seconds(5)}};

}  // namespace StopSequences

// Performs the steps in order until the process has ended. Returns the last action performed, or std::nullopt
// if the process survives all steps or `perform` returns false.
//
// `perform` returns false to end the sequence. `hasEnded` waits up to `timeout` and returns true if the
// process has ended.
std::optional<StopAction> runStopSequence(StopSequence steps,
                                          const std::function<bool(StopAction action)>& perform,
                                          const std::function<bool(Seconds timeout)>& hasEnded);

// Returns the sum of the waits, the longest time that a stop blocks.
constexpr Seconds totalWait(StopSequence steps) {
    Seconds total{};
    for (const StopStep& step : steps) total += step.wait;
    return total;
}

}  // namespace tarnik
