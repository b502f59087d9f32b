#include "core/updates/UpdateLoop.h"

#include <utility>

namespace tarnik {

UpdateInstallAction QuietUpdate::action(Situation situation) {
    if (!situation.updateReady) return UpdateInstallAction::nothing;
    if (situation.quitting) return UpdateInstallAction::installAtQuit;
    return situation.quiet ? UpdateInstallAction::installNow : UpdateInstallAction::wait;
}

void UpdateLoop::updateReady() {
    if (quitting) return;
    updateWaiting = true;
    watch.reset();
}

UpdateInstallAction UpdateLoop::observe(const ActivitySample& sample, TimePoint now) {
    if (quitting) return UpdateInstallAction::nothing;
    watch.observe(sample);
    const auto action = QuietUpdate::action({.updateReady = updateWaiting, .quiet = watch.isQuiet(now)});
    if (action == UpdateInstallAction::installNow) updateWaiting = false;
    return action;
}

UpdateInstallAction UpdateLoop::menuClick() {
    if (quitting) return UpdateInstallAction::nothing;
    return std::exchange(updateWaiting, false) ? UpdateInstallAction::installNow
                                               : UpdateInstallAction::checkWithSparkle;
}

UpdateInstallAction UpdateLoop::quit() {
    quitting = true;
    return QuietUpdate::action({.updateReady = std::exchange(updateWaiting, false), .quitting = true});
}

}  // namespace tarnik
