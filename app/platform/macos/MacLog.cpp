#include <os/log.h>

#include "app/platform/macos/MacOperations.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

SystemLog macLog(const std::string& category) {
    const std::string subsystem(TarnikIdentity::bundleIdentifier);
    os_log_t log = ::os_log_create(subsystem.c_str(), category.c_str());  // never released
    return [log](const std::string& message) { os_log(log, "%{public}s", message.c_str()); };
}

}  // namespace tarnik
