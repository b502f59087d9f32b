#pragma once

#include <string>

#include "core/process/Environment.h"

namespace tarnik {

// The system's standard folders for a user's data, as absolute paths without a trailing slash. All programs
// share these folders. This program uses the subfolder "tarnik" of each folder. The folders may be missing.
struct SystemFolders {
    std::string applicationSupport;  // data that a program needs to work
    std::string logs;
    std::string preferences;

    // Returns the folder of the program's own logs: "tarnik" in the folder for logs.
    std::string stateFolder() const;

    // On Linux, uses the XDG base directories. Ignores a variable that is not an absolute path.
    static SystemFolders of(const Environment& environment, const std::string& userFolder);
};

}  // namespace tarnik
