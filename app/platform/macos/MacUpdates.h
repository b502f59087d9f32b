#pragma once

#include "app/platform/SystemLog.h"
#include "app/platform/UpdateFramework.h"

namespace tarnik {

// Sparkle, in a build that was given it; without operations otherwise. `log` hears why it can't start.
UpdateFramework macUpdates(SystemLog log);

}  // namespace tarnik
