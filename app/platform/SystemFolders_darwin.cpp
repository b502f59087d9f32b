#include "app/platform/SystemFolders.h"

namespace tarnik {

// These are the folders that the system returns for a program outside a sandbox.
SystemFolders SystemFolders::of(const Environment&, const std::string& userFolder) {
    const std::string library = userFolder + "/Library";
    return {.applicationSupport = library + "/Application Support",
            .logs = library + "/Logs",
            .preferences = library + "/Preferences"};
}

}  // namespace tarnik
