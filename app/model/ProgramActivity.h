#pragma once

#include "app/model/AppState.h"
#include "app/platform/Activity.h"

namespace tarnik {

// Returns busy while the helper is installed, runs, pairs or waits for its restart, while the desktop driver
// runs, and during the shutdown.
Activity activityOf(const AppState& state);

}  // namespace tarnik
