#include "core/updates/QuietUpdate.h"

namespace tarnik::QuietUpdate {

UpdateInstallAction action(Situation situation) {
    if (!situation.updateReady) return UpdateInstallAction::nothing;
    if (situation.quitting) return UpdateInstallAction::installAtQuit;
    return situation.quiet ? UpdateInstallAction::installNow : UpdateInstallAction::wait;
}

}  // namespace tarnik::QuietUpdate
