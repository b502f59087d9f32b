#pragma once

#include "core/process/Environment.h"
#include "core/switches/Switch.h"

namespace tarnik {

// Starts the desktop's settings program at the page that has the switch. Does nothing if no known settings
// program is installed. `environment` names the desktop and the search path. Returns at once.
void openSettingsProgram(Switch which, const Environment& environment);

}  // namespace tarnik
