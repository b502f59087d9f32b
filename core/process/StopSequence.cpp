#include "core/process/StopSequence.h"

namespace tarnik {

std::optional<StopAction> runStopSequence(StopSequence steps,
                                          const std::function<bool(StopAction action)>& perform,
                                          const std::function<bool(Seconds timeout)>& hasEnded) {
    for (const StopStep& step : steps) {
        if (!perform(step.action)) return std::nullopt;
        if (hasEnded(step.wait)) return step.action;
    }
    return std::nullopt;
}

}  // namespace tarnik
