#pragma once

#include "core/updates/QuietWatch.h"
#include "core/updates/UpdateInstallAction.h"

namespace tarnik {

// Holds back an update that was downloaded until a quiet moment, a person's wish or the end of the program,
// and says what to do at each event. A value; its owner keeps it on one thread.
//
//   from      event                  to         answer
//   idle      updateReady            waiting    the quiet stretch begins at the next sample
//   waiting   updateReady            waiting    the same
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
