#include "app/platform/SystemFolders.h"

#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

std::string SystemFolders::stateFolder() const {
    return logs + "/" + std::string(TarnikIdentity::appName);
}

}  // namespace tarnik
