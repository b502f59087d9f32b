#include "app/control/ControlFolder.h"

#include "core/foundation/TarnikIdentity.h"

namespace tarnik::ControlFolder {

std::vector<std::string> candidates(const Environment&, const SystemFolders& folders) {
    return {folders.applicationSupport + "/" + std::string(TarnikIdentity::appName)};
}

}  // namespace tarnik::ControlFolder
