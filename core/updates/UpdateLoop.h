#pragma once

#include "core/updates/QuietWatch.h"

namespace tarnik {

// The action to take for a downloaded update.
enum class UpdateInstallAction {
    nothing,
    installNow,
    wait,              // for a quiet moment
    installAtQuit,     // the update framework installs when the program quits
    checkWithSparkle,  // the update framework checks for an update and shows its own windows
};

// The rule for the installation of a downloaded update.
namespace QuietUpdate {

struct Situation {  // the facts that decide the action
    bool updateReady = false;
    bool quiet = false;
    bool quitting = false;
};

UpdateInstallAction action(Situation situation);

}  // namespace QuietUpdate

// Delays a downloaded update until a quiet moment, a request of the user, or the end of the program. A value
// that belongs to one thread.
//
//   from      event                  to         returns
//   idle      updateReady            waiting    void; the quiet stretch begins at the next sample
//   waiting   updateReady            waiting    void; as above
//   idle      observe                idle       nothing
//   waiting   observe, not quiet     waiting    wait
//   waiting   observe, quiet         idle       installNow
//   idle      menuClick              idle       checkWithSparkle
//   waiting   menuClick              idle       installNow
//   idle      quit                   quitting   nothing
//   waiting   quit                   quitting   installAtQuit
//   quitting  any                    quitting   nothing
struct UpdateLoop {
    QuietWatch watch;
    bool updateWaiting = false;
    bool quitting = false;

    void updateReady();
    UpdateInstallAction observe(const ActivitySample& sample, TimePoint now);
    UpdateInstallAction menuClick();
    UpdateInstallAction quit();

    bool operator==(const UpdateLoop&) const = default;
};

}  // namespace tarnik
