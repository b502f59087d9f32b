#pragma once

#include "core/updates/UpdateInstallAction.h"

// When an update that is ready goes in, as a rule without memory.
namespace tarnik::QuietUpdate {

struct Situation {
    bool updateReady = false;
    bool quiet = false;
    bool quitting = false;
};

UpdateInstallAction action(Situation situation);

}  // namespace tarnik::QuietUpdate
