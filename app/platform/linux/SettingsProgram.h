#pragma once

#include "core/process/Environment.h"
#include "core/switches/Switch.h"

namespace tarnik {

// Starts the desktop's own settings, at the page where the switch is; nothing happens where there are none.
// `environment` tells which desktop it is and where its programs are. Returns at once.
void openSettingsProgram(Switch which, const Environment& environment);

}  // namespace tarnik
