#include "app/control/ControlFolder.h"

#include "core/foundation/Files.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik::ControlFolder {

std::vector<std::string> candidates(const Environment& environment, const SystemFolders& folders) {
    const std::string name = "/" + std::string(TarnikIdentity::appName);
    const std::string runtime = environmentValue(environment, "XDG_RUNTIME_DIR");
    std::vector<std::string> found;
    if (runtime.starts_with('/') && isFolder(runtime)) found.push_back(runtime + name);
    found.push_back(folders.applicationSupport + name);
    return found;
}

}  // namespace tarnik::ControlFolder
