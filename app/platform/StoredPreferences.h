#pragma once

#include "app/platform/SystemFolders.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"

namespace tarnik {

// Opens the preferences of the program with a window: a file on Linux, the domain of our bundle identifier on
// macOS. `log` receives failures.
UserDefaults storedPreferences(const SystemFolders& folders, const SystemLog& log);

}  // namespace tarnik
