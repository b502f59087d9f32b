#pragma once

#include "app/platform/SystemEvents.h"

namespace tarnik {

// When the application object exists, and its loop doesn't run yet.
SystemEvents macEvents();

}  // namespace tarnik
