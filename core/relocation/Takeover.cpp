#include "core/relocation/Takeover.h"

namespace tarnik::Relocation {

namespace {

// Returns true if the copy ends within the budget. Makes no check if the budget is zero.
bool endsWithin(Seconds budget, const TakeoverSteps& steps) {
    for (Seconds slept = Seconds::zero(); slept < budget; slept += steps.interval) {
        steps.sleep(steps.interval);
        if (!steps.isRunning()) return true;
        if (steps.interval <= Seconds::zero()) break;
    }
    return false;
}

}  // namespace

TakeoverResult takeOver(const TakeoverSteps& steps) {
    steps.terminate();
    if (!steps.isRunning() || endsWithin(steps.graceful, steps)) return TakeoverResult::quitGracefully;
    steps.forceTerminate();
    if (!steps.isRunning() || endsWithin(steps.forced, steps)) return TakeoverResult::neededForce;
    return TakeoverResult::stillRunning;
}

}  // namespace tarnik::Relocation
