#pragma once

#include <string>

#include "core/process/Environment.h"

namespace tarnik {

// Where this system wants a program to keep what is the user's. Full paths without a slash at the end;
// nothing is made. Each is shared by all programs: ours is a folder "tarnik" inside.
struct SystemFolders {
    std::string applicationSupport;  // what a program needs to work
    std::string logs;
    std::string preferences;

    // On Linux by the XDG base directories (a value that isn't a full path counts as absent, as they say).
    static SystemFolders of(const Environment& environment, const std::string& userFolder);
};

}  // namespace tarnik
